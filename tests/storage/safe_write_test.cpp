#include "tooldb/platform/safe_write.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/storage/faulty_file_system.h"
#include "tests/storage/scratch_folder.h"
#include "tooldb/platform/process.h"

namespace tooldb {
namespace {

using testing::ElementsAre;
using testing::Pair;

/// The name that the next temporary file of this process gets, up to its number.
std::string own_prefix() {
  const ScratchFolder scratch;
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  std::string name;
  disk.Let([&](const FileCall& call) {
    if (call.kind == FileCall::Kind::kCreate) name = call.path.substr(call.path.rfind('/') + 1);
    return false;
  });
  replace_file(scratch.Path("x"), "");
  return name.substr(0, name.rfind('-') + 1);
}

TEST(TemporaryName, IsKnownAndShort) {
  const std::string own = own_prefix() + "0.tmp";
  EXPECT_TRUE(is_temporary_file_name(own));
  EXPECT_LE(own.size(), 41U);
  EXPECT_TRUE(is_temporary_file_name(".tdb-4294967295-4294967295-4294967295.tmp"));
  for (const char* other : {"", ".tdb-", ".tdb-1-2.tmp", ".tdb-1-2-3", ".tdb-1-2-3.tmp.ktf",
                            "tdb-1-2-3.tmp", ".tdb-1-2-x.tmp", ".tdb-1-2-4294967296.tmp"}) {
    EXPECT_FALSE(is_temporary_file_name(other)) << other;
  }
}

TEST(SafeWrite, PassesByTheNamesThatAreTaken) {
  const ScratchFolder scratch;
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  int taken = 3;
  disk.Let([&](const FileCall& call) {
    if (call.kind == FileCall::Kind::kCreate && taken-- > 0) std::ofstream(call.path) << "other";
    return false;
  });
  replace_file(scratch.Path("a"), "text");
  EXPECT_EQ(scratch.Files().size(), 4U);
  EXPECT_EQ(scratch.Files()["a"], "text");
}

TEST(SafeWrite, KeepsTheOldFileAtEveryFailure) {
  const ScratchFolder scratch;
  const std::string path = scratch.MakeFile("a", "old");
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  int failures = 0;
  for (int n = 1;; ++n) {
    disk.Let([&](const FileCall& call) { return call.number == n; });
    try {
      replace_file(path, "new text");
      break;
    } catch (const FileError& error) {
      EXPECT_EQ(error.message, path + ": made to fail");
      EXPECT_THAT(scratch.Files(), ElementsAre(Pair("a", "old"))) << "call " << n;
      ++failures;
    }
  }
  EXPECT_EQ(failures, 5) << "create, write, flush, close, rename";
  EXPECT_THAT(scratch.Files(), ElementsAre(Pair("a", "new text")));
}

TEST(Sweep, TakesWhatIsLeftOverAndCanGo) {
  const std::string own = own_prefix();
  const std::string own_machine = own.substr(0, own.find('-', own.find('-') + 1) + 1);
  // Of a process number that is certainly free: the largest that some system has is below it.
  const struct {
    std::string file;
    int age_seconds;
    bool stays;
  } kFiles[] = {
      {own + "77.tmp", 0, true},
      {own + "78.tmp", 700, false},
      {own_machine + "999999999-0.tmp", 0, false},
      {".tdb-1-999999999-0.tmp", 500, true},  // another machine's
      {".tdb-1-999999999-1.tmp", 700, true},  // cannot be removed
      {".tdb-1-999999999-2.tmp", 700, false},
      {".tdb-1-999999999-3.tmp", -5000, true},  // from the future
      {".tdb-backup.tmp", 5000, true},          // not ours
      {"T1.ktf", 5000, true},
  };
  const ScratchFolder scratch;
  const auto now = std::filesystem::file_time_type::clock::now();
  for (const auto& [file, age_seconds, stays] : kFiles) {
    std::filesystem::last_write_time(scratch.MakeFile(file, ""),
                                     now - std::chrono::seconds(age_seconds));
  }
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  disk.Let([&](const FileCall& call) { return call.path == scratch.Path(kFiles[4].file); });
  sweep_temporary_files(scratch.Path());
  const auto files = scratch.Files();
  for (const auto& row : kFiles) EXPECT_EQ(files.contains(row.file), row.stays) << row.file;
  sweep_temporary_files(scratch.Path("missing"));
}

}  // namespace
}  // namespace tooldb

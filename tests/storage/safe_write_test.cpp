#include "tooldb/platform/safe_write.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

#include "tests/geom/row_name.h"
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

struct SweepCase {
  std::string_view name;
  std::string file;
  int age_seconds;
  bool swept;
};

/// A process number that is certainly free: the largest that some system has is below it.
constexpr const char* kDeadProcess = "999999999-0.tmp";

std::vector<SweepCase> sweep_cases() {
  const std::string own = own_prefix();
  const std::string own_machine = own.substr(0, own.find('-', own.find('-') + 1) + 1);
  return {
      {"OfThisProcess", own + "77.tmp", 0, false},
      {"OfThisProcessButOld", own + "77.tmp", 700, true},
      {"OfADeadProcess", own_machine + kDeadProcess, 0, true},
      {"OfAnotherMachine", ".tdb-1-" + std::string(kDeadProcess), 500, false},
      {"OfAnotherMachineAndOld", ".tdb-1-" + std::string(kDeadProcess), 700, true},
      {"FromTheFuture", ".tdb-1-" + std::string(kDeadProcess), -5000, false},
      {"OldButNotOurs", ".tdb-backup.tmp", 5000, false},
      {"OldTool", "T1.ktf", 5000, false},
  };
}

class Sweep : public testing::TestWithParam<SweepCase> {};

TEST_P(Sweep, TakesWhatIsLeftOver) {
  const ScratchFolder scratch;
  const std::string path = scratch.MakeFile(GetParam().file, "text");
  std::filesystem::last_write_time(path, std::filesystem::file_time_type::clock::now() -
                                             std::chrono::seconds(GetParam().age_seconds));
  sweep_temporary_files(scratch.Path());
  EXPECT_EQ(scratch.Files().empty(), GetParam().swept);
}

INSTANTIATE_TEST_SUITE_P(Files, Sweep, testing::ValuesIn(sweep_cases()), row_name<SweepCase>);

TEST(Sweep, GoesOnPastAFileThatStays) {
  const ScratchFolder scratch;
  const std::string stays = scratch.MakeFile(".tdb-1-2-3.tmp", "");
  const std::string goes = scratch.MakeFile(".tdb-1-2-4.tmp", "");
  const auto long_ago = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
  for (const std::string& path : {stays, goes}) std::filesystem::last_write_time(path, long_ago);
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  disk.Let([&](const FileCall& call) { return call.path == stays; });
  sweep_temporary_files(scratch.Path());
  EXPECT_THAT(scratch.Files(), ElementsAre(Pair(".tdb-1-2-3.tmp", "")));
  sweep_temporary_files(scratch.Path("missing"));
}

}  // namespace
}  // namespace tooldb

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/geom/row_name.h"
#include "tests/storage/scratch_folder.h"
#include "tooldb/file_manager.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/tool.h"
#include "tooldb/util.h"

// What only Windows has: paths that mean something else there, and files that others keep from
// being changed.

namespace tooldb {
namespace {

using testing::Pair;

struct PathCase {
  std::string_view name;
  std::string path, problem;
};

const std::string kDevice = "name of a device";
const std::string kDropped = "name that ends in a dot or a blank, which the system drops";
const std::string kDriveRelative =
    "relative to the current folder of a drive; give the full path, as in C:\\tools";

const PathCase kPaths[] = {
    {"DriveRelative", "C:tools/T1.ktf", kDriveRelative},
    {"DriveAlone", "z:", kDriveRelative},
    {"Device", "nul", kDevice},
    {"DeviceWithExtension", "C:\\tools\\Com1.ktf", kDevice},
    {"DeviceBeforeBlanks", "tools/AUX  .tar.gz", kDevice},
    {"DeviceAsFolder", "tools/con/T1.ktf", kDevice},
    {"DeviceOfTheConsole", "CONIN$", kDevice},
    {"DeviceWithARaisedNumber", "LPT\xC2\xB2", kDevice},
    {"DevicePath", "\\\\.\\COM1", "path of a device"},
    {"UncheckedPath", "//?/C:/tools/T1.ktf", "path of a device"},
    {"DotAtTheEnd", "tools/T1.ktf.", kDropped},
    {"BlankAtTheEnd", "T1.ktf ", kDropped},
    {"DotAtTheEndOfAFolder", "tools./T1.ktf", kDropped},
    {"Stream", "C:/tools/T1.ktf:notes", "colon in the name"},
    {"NoText", "tools/\xC3.ktf", "bytes in the name that the code page does not have"},
    {"TooLong", "C:/" + std::string(124, 'x') + '/' + std::string(132, 'y'),
     "path longer than 259 characters"},
    {"TooLongFromHere", std::string(259, 'x'), "path longer than 259 characters"},
};

class WindowsPath : public testing::TestWithParam<PathCase> {};

TEST_P(WindowsPath, IsRefusedByEveryCall) {
  const auto& [name, path, problem] = GetParam();
  void (*const calls[])(const std::string&) = {
      [](const std::string& file) { file_system().Read(file); },
      [](const std::string& file) { file_system().Open(file); },
      [](const std::string& file) { file_system().CreateNew(file); },
      [](const std::string& file) { file_system().Rename(file, "T2.ktf"); },
      [](const std::string& file) { file_system().Remove(file); },
      [](const std::string& file) { file_system().CreateFolder(file); },
      [](const std::string& file) { file_system().List(file); },
      [](const std::string& file) { file_system().IsFile(file); },
      [](const std::string& file) { file_system().IsFolder(file); },
      [](const std::string& file) { file_system().LastWriteTime(file); },
      [](const std::string& file) { file_system().LastWriteNanoseconds(file); },
  };
  for (const auto& call : calls) {
    try {
      call(path);
      ADD_FAILURE() << "call " << &call - calls << " raises nothing";
    } catch (const FileError& error) {
      EXPECT_EQ(error.message, path + ": " + problem) << "call " << &call - calls;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Paths, WindowsPath, testing::ValuesIn(kPaths), row_name<PathCase>);

TEST(WindowsPath, MayHave259Characters) {
  const ScratchFolder scratch;
  // Two bytes each in the code page, one character each for the system.
  std::string path = scratch.Path() + '/';
  while (path.size() < 257) path += 'x';
  path += "\xC3\xB6\xC3\xB6";
  tdbFileUtil::write_file(path.substr(0, path.size() - 42) + ".ktf", "text");
  EXPECT_NE(file_system().CreateNew(path), nullptr);
  EXPECT_EQ(scratch.Files().size(), 2U);
  EXPECT_THROW(file_system().CreateNew(path + 'x'), FileError);
}

/// Puts a file at `path` that cannot be changed as long as what this returns lives.
std::unique_ptr<NewFile> make_open(const std::string& path) {
  auto file = file_system().CreateNew(path);
  file->Write("old");
  return file;
}

std::unique_ptr<NewFile> make_read_only(const std::string& path) {
  tdbFileUtil::write_file(path, "old");
  std::filesystem::permissions(path, std::filesystem::perms::owner_write,
                               std::filesystem::perm_options::remove);
  return nullptr;
}

/// Every change of the file of a tool T1; false, and the error filled, when it fails.
constexpr bool (*kChanges[])(tdbFileManager& files, tdbTool& tool, tdbError& error) = {
    [](auto& files, auto& tool, auto& error) { return files.InsertItem(&tool, error); },
    [](auto& files, auto& tool, auto& error) { return files.UpdateItem("T1", &tool, error); },
    [](auto& files, auto& tool, auto& error) {
      tool.SetCode("T2");
      return files.UpdateItem("T1", &tool, error);
    },
    [](auto& files, auto& tool, auto& error) { return files.DeleteItem(&tool, error); },
};

TEST(WindowsFile, StaysAsItIs) {
  const std::pair<std::unique_ptr<NewFile> (*)(const std::string&), const char*> kKept[] = {
      {make_open, "The file is open in another program"},
      {make_read_only, "The file is read-only"}};
  for (const auto& [make, reason] : kKept) {
    for (const auto& change : kChanges) {
      SCOPED_TRACE(&change - kChanges);
      const ScratchFolder scratch;
      std::string folder = scratch.Path();
      const std::string path = scratch.Path("T1.ktf");
      tdbFileManager files;
      tdbError error(7);
      ASSERT_TRUE(files.Init(folder, error));
      std::unique_ptr<NewFile> held = make(path);
      tdbTool tool("T1");
      EXPECT_FALSE(change(files, tool, error));
      held.reset();
      EXPECT_THAT(scratch.Files(), testing::ElementsAre(Pair("T1.ktf", "old")));
      EXPECT_THAT(error.message, testing::StartsWith(folder));
      EXPECT_THAT(error.message, testing::EndsWith(std::string(".ktf: ") + reason));
      std::filesystem::permissions(path, std::filesystem::perms::owner_write,
                                   std::filesystem::perm_options::add);
    }
  }
}

TEST(WindowsFile, HasOneTimeInBothUnits) {
  const ScratchFolder scratch;
  for (const std::string& path : {scratch.Path(), scratch.MakeFile("T1.ktf", "")}) {
    EXPECT_EQ(file_system().LastWriteNanoseconds(path) / 1'000'000'000,
              file_system().LastWriteTime(path));
  }
}

TEST(WindowsFile, OpenElsewhereIsNotRead) {
  const ScratchFolder scratch;
  const auto held = file_system().CreateNew(scratch.Path("T1.ktf"));
  try {
    file_system().Read(scratch.Path("T1.ktf"));
    ADD_FAILURE() << "nothing raised";
  } catch (const FileError& error) {
    EXPECT_EQ(error.reason, "The file is open in another program");
  }
}

}  // namespace
}  // namespace tooldb

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/storage/faulty_file_system.h"
#include "tests/storage/scratch_folder.h"
#include "tooldb/file_manager.h"
#include "tooldb/platform/process.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Key;
using testing::Pair;
using testing::UnorderedElementsAre;

TEST(FilePath, HasAStemAndAnExtension) {
  const struct {
    const char *path, *stem, *extension;
  } kPaths[] = {{"/a/b/T1.ktf", "T1", ".ktf"},     {"T1.ktf", "T1", ".ktf"},
                {"/a/D10.5.ktf", "D10.5", ".ktf"}, {"/a.b/T1", "T1", ""},
                {"/a/...ktf", "..", ".ktf"},       {"/a/.ktf", "", ".ktf"}};
  for (const auto& [path, stem, extension] : kPaths) {
    std::string name;
    std::string end;
    tdbFileUtil::get_file_name(path, name);
    tdbFileUtil::get_file_extension(path, end);
    EXPECT_EQ(name, stem) << path;
    EXPECT_EQ(end, extension) << path;
  }
}

TEST(FilePath, LiesInAFolderByItsParts) {
  const struct {
    std::string folder, file;
    bool inside;
  } kCases[] = {
      {"/a/b", "/a/b/c.stl", true},     {"/a/b", "/a/b/c/d.stl", true},
      {"/a/b", "/a/bc/d.stl", false},   {"/a/b/", "/a/./b/c.stl", true},
      {"/a/b", "/a/b/../c.stl", false}, {"/a/b", "/a/b", false},
      {"/a/b", "c.stl", false},
  };
  for (auto [folder, file, inside] : kCases) {
    EXPECT_EQ(tdbFileUtil::path_contains_file(folder, file), inside) << folder << ' ' << file;
  }
}

TEST(Folder, ListsOneExtensionInByteOrder) {
  const ScratchFolder scratch;
  scratch.MakeFolder("folder.ktf");
  for (const char* name : {"b.ktf", "D.ktf", "a.ktcf", "a.ktf", "c.KTF", ".ktf", "ktf"}) {
    scratch.MakeFile(name, "");
  }
  std::vector<std::string> names = {"old"};
  tdbFileUtil::get_files(scratch.Path(), names, ".ktf");
  EXPECT_THAT(names, ElementsAre("D.ktf", "a.ktf", "b.ktf"));
  EXPECT_EQ(tdbFileUtil::get_file_count(scratch.Path(), ".ktcf"), 1);
}

TEST(Folder, LosesEveryFileThatCanGoAndNoFolder) {
  const ScratchFolder scratch;
  scratch.MakeFolder("inner");
  for (const char* name : {"a", "b", "c", "inner/kept"}) scratch.MakeFile(name, "");
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  disk.Let([&](const FileCall& call) { return call.path == scratch.Path("b"); });
  EXPECT_THROW(tdbFileUtil::remove_all_file_into_directory(scratch.Path()), tdbError);
  EXPECT_THAT(scratch.Files(), ElementsAre(Key("b"), Key("inner/kept")));
  disk.Let(nullptr);
  tdbFileUtil::remove_all_file_into_directory(scratch.Path());
  EXPECT_THAT(scratch.Files(), ElementsAre(Key("inner/kept")));
}

TEST(Folder, IsWritableOnlyWhenAFileCanBeMade) {
  const ScratchFolder scratch;
  tdbError error(7);
  EXPECT_TRUE(tdbFileUtil::is_directory_writable(scratch.Path(), error));
  EXPECT_TRUE(scratch.Files().empty()) << "the probe file is gone";
  for (const std::string& folder : {scratch.MakeFile("file", ""), scratch.Path("missing")}) {
    EXPECT_FALSE(tdbFileUtil::is_directory_writable(folder, error));
    EXPECT_EQ(error.message, folder);
  }
  EXPECT_EQ(error.code, 7);
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  disk.Let([](const FileCall& call) { return call.kind == FileCall::Kind::kRemove; });
  EXPECT_TRUE(tdbFileUtil::is_directory_writable(scratch.Path(), error));
  EXPECT_THAT(error.message, HasSubstr(scratch.Path() + '/')) << "the probe that stays";
}

TEST(Folder, LosesTheProbesOfKilledProcessesAtInit) {
  const ScratchFolder scratch;
  const std::string alphabet = "abcdefghijklmnaoqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890";
  const auto next_name = [&] { return tdbUtil::generate_random_string(6, alphabet); };
  std::srand(1);
  const std::string own_text = next_name();
  const std::string own_empty = next_name();
  scratch.MakeFile(own_text, "somebody's own");
  scratch.MakeFile(own_empty, "");
  for (int left = 0; left < 3; ++left) file_system().CreateProbe(scratch.Path(next_name()));
  std::srand(1);
  std::string folder = scratch.Path();
  tdbFileManager files;
  tdbError error;
  EXPECT_TRUE(files.Init(folder, error)) << error.message;
  EXPECT_THAT(scratch.Files(),
              UnorderedElementsAre(Pair(own_text, "somebody's own"), Pair(own_empty, "")));
}

TEST(Folder, TakesFilesOverUnderAnotherExtension) {
  const ScratchFolder scratch;
  const std::string from = scratch.MakeFolder("from");
  const std::string to = scratch.MakeFolder("to");
  scratch.MakeFile("from/a.old", "a");
  scratch.MakeFile("from/b.old", "b");
  scratch.MakeFile("to/a.new", "another");
  tdbError error;
  EXPECT_FALSE(tdbFileUtil::change_extension_file_to_folder(from, to, ".new", error));
  EXPECT_THAT(error.message, HasSubstr("a.new"));
  EXPECT_THAT(scratch.Files(), ElementsAre(Pair("from/a.old", "a"), Pair("to/a.new", "another"),
                                           Pair("to/b.new", "b")));
  EXPECT_TRUE(tdbFileUtil::change_extension_file_to_folder(from, from, ".old", error));
  EXPECT_FALSE(tdbFileUtil::change_extension_file_to_folder("", to, ".new", error));
  EXPECT_EQ(error.message, "Folder path empty");
  EXPECT_FALSE(tdbFileUtil::change_extension_file_to_folder(from, to + "x", ".new", error));
  EXPECT_EQ(error.message, to + "x is not a directory");
}

TEST(File, CopiesOntoItselfUnharmed) {
  const ScratchFolder scratch;
  const std::string path = scratch.MakeFile("a.stl", "solid");
  EXPECT_TRUE(tdbFileUtil::copy_file(path, path));
  EXPECT_FALSE(tdbFileUtil::copy_file(scratch.Path("none"), path));
  EXPECT_THAT(scratch.Files(), ElementsAre(Pair("a.stl", "solid")));
}

TEST(FileCalls, NameThePathAndTheReason) {
  // Each on a path below a file, which no system allows.
  void (*const kCalls[])(const std::string& path) = {
      [](const std::string& path) { file_system().Open(path); },
      [](const std::string& path) {
        std::string text;
        tdbFileUtil::read_file(path, text);
      },
      [](const std::string& path) { tdbFileUtil::write_file(path, "x"); },
      [](const std::string& path) { tdbFileUtil::remove_file(path); },
      [](const std::string& path) { tdbFileUtil::rename_file(path, path + "2"); },
      [](const std::string& path) { tdbFileUtil::create_directory(path); },
      [](const std::string& path) { tdbFileUtil::get_last_write_time(path); },
      [](const std::string& path) { tdbFileUtil::get_file_count(path, ".ktf"); },
      [](const std::string& path) { set_current_folder(path); },
  };
  const ScratchFolder scratch;
  const std::string path = scratch.MakeFile("file", "") + "/inner";
  for (const auto& call : kCalls) {
    SCOPED_TRACE(&call - kCalls);
    try {
      call(path);
      ADD_FAILURE() << "nothing raised";
    } catch (const tdbError& error) {
      EXPECT_EQ(error.code, 1);
      EXPECT_EQ(error.message.find(path + ": "), 0U) << error.message;
      EXPECT_GT(error.message.size(), path.size() + 5);
    }
  }
}

TEST(InputFile, GivesEveryPart) {
  const ScratchFolder scratch;
  const std::string digits = "0123456789";
  const std::string path = scratch.MakeFile("digits", digits);
  EXPECT_THROW(file_system().Open(scratch.MakeFolder("folder")), FileError);
  FaultyFileSystem disk;
  const std::unique_ptr<InputFile> files[] = {file_system().Open(path), disk.Open(path)};
  for (const auto& file : files) {
    EXPECT_EQ(file->Size(), digits.size());
    for (const std::size_t offset : {0U, 1U, 5U, 9U, 10U, 11U, 1000U}) {
      for (std::size_t size = 0; size < 12; ++size) {
        std::string bytes(size, '?');
        bytes.resize(file->Read(offset, bytes.data(), size));
        EXPECT_EQ(bytes, digits.substr(std::min(offset, digits.size()), size));
      }
    }
  }
}

#ifdef __linux__
// They are longer than they say, cannot be read, or cannot be flushed.
TEST(FilesOfTheSystem, AreReadWholeOrTellWhyNot) {
  EXPECT_GT(file_system().Read("/proc/self/maps").size(), 100U);
  EXPECT_THROW(file_system().Read("/proc/self/mem"), FileError);
  EXPECT_NO_THROW(file_system().FlushFolder("/proc"));
  EXPECT_THROW(file_system().FlushDisk("/proc/none"), FileError);
  EXPECT_FALSE(file_system().IsSameFile("/proc/none", "/proc/none"));
}
#endif

TEST(RandomNames, HaveTheLengthAndTheAlphabet) {
  EXPECT_EQ(tdbUtil::generate_random_string(0, "ab"), "");
  EXPECT_EQ(tdbUtil::generate_random_string(-1, "ab"), "");
  EXPECT_EQ(tdbUtil::generate_random_string(3, ""), "");
  EXPECT_EQ(tdbUtil::generate_random_string(4, "a"), "aaaa");
}

}  // namespace
}  // namespace tooldb

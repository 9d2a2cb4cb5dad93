#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/geom/row_name.h"
#include "tests/storage/faulty_file_system.h"
#include "tests/storage/scratch_folder.h"
#include "tooldb/file_manager.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::UnorderedElementsAre;

struct PathCase {
  std::string_view name, path, stem, extension;
};

constexpr PathCase kPaths[] = {
    {"Plain", "/a/b/T1.ktf", "T1", ".ktf"},
    {"NoFolder", "T1.ktf", "T1", ".ktf"},
    {"DotInTheCode", "/a/D10.5.ktf", "D10.5", ".ktf"},
    {"DotInTheFolder", "/a.b/T1", "T1", ""},
    {"CodeOfDots", "/a/...ktf", "..", ".ktf"},
    {"OnlyExtension", "/a/.ktf", "", ".ktf"},
};

class FilePath : public testing::TestWithParam<PathCase> {};

TEST_P(FilePath, Splits) {
  std::string stem;
  std::string extension;
  tdbFileUtil::get_file_name(std::string(GetParam().path), stem);
  tdbFileUtil::get_file_extension(std::string(GetParam().path), extension);
  EXPECT_EQ(stem, GetParam().stem);
  EXPECT_EQ(extension, GetParam().extension);
}

INSTANTIATE_TEST_SUITE_P(Paths, FilePath, testing::ValuesIn(kPaths), row_name<PathCase>);

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

TEST(Folder, LosesItsFilesButNoFolder) {
  const ScratchFolder scratch;
  scratch.MakeFolder("inner");
  scratch.MakeFile("inner/kept.ktf", "");
  scratch.MakeFile("a.ktf", "");
  scratch.MakeFile("b.stl", "");
  tdbFileUtil::remove_all_file_into_directory(scratch.Path());
  EXPECT_THAT(scratch.Files(), ElementsAre(Pair("inner/kept.ktf", "")));
}

TEST(Folder, LosesWhatItCanWhenOneFileStays) {
  const ScratchFolder scratch;
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  for (const char* name : {"a", "b", "c"}) scratch.MakeFile(name, "");
  disk.Let([&](const FileCall& call) { return call.path == scratch.Path("b"); });
  EXPECT_THROW(tdbFileUtil::remove_all_file_into_directory(scratch.Path()), tdbError);
  EXPECT_THAT(scratch.Files(), ElementsAre(Pair("b", "")));
}

TEST(Folder, IsWritableOnlyWhenAFileCanBeMade) {
  const ScratchFolder scratch;
  const std::string file = scratch.MakeFile("file", "");
  const std::string missing = scratch.Path("missing");
  tdbError error(7);
  EXPECT_TRUE(tdbFileUtil::is_directory_writable(scratch.Path(), error));
  EXPECT_EQ(scratch.Files().size(), 1U) << "the probe file is gone";
  for (const std::string& folder : {file, missing}) {
    EXPECT_FALSE(tdbFileUtil::is_directory_writable(folder, error));
    EXPECT_EQ(error.message, folder);
  }
  EXPECT_EQ(error.code, 7);
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

TEST(Folder, IsWritableThoughTheProbeCannotBeRemoved) {
  const ScratchFolder scratch;
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  disk.Let([](const FileCall& call) { return call.kind == FileCall::Kind::kRemove; });
  tdbError error;
  EXPECT_TRUE(tdbFileUtil::is_directory_writable(scratch.Path(), error));
  EXPECT_THAT(error.message, HasSubstr(scratch.Path()));
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

struct FailingCall {
  std::string_view name;
  void (*call)(const std::string& path);
};

// Each on a path below a file, which no system allows.
constexpr FailingCall kFailingCalls[] = {
    {"Read",
     [](const std::string& path) {
       std::string text;
       tdbFileUtil::read_file(path, text);
     }},
    {"Write", [](const std::string& path) { tdbFileUtil::write_file(path, "x"); }},
    {"Remove", [](const std::string& path) { tdbFileUtil::remove_file(path); }},
    {"Rename", [](const std::string& path) { tdbFileUtil::rename_file(path, path + "2"); }},
    {"CreateFolder", [](const std::string& path) { tdbFileUtil::create_directory(path); }},
    {"Time", [](const std::string& path) { tdbFileUtil::get_last_write_time(path); }},
    {"Count", [](const std::string& path) { tdbFileUtil::get_file_count(path, ".ktf"); }},
};

class FileFailure : public testing::TestWithParam<FailingCall> {};

TEST_P(FileFailure, NamesThePathAndTheReason) {
  const ScratchFolder scratch;
  const std::string path = scratch.MakeFile("file", "") + "/inner";
  try {
    GetParam().call(path);
    FAIL() << "nothing raised";
  } catch (const tdbError& error) {
    EXPECT_EQ(error.code, 1);
    EXPECT_EQ(error.message.find(path + ": "), 0U) << error.message;
    EXPECT_GT(error.message.size(), path.size() + 5);
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, FileFailure, testing::ValuesIn(kFailingCalls),
                         row_name<FailingCall>);

TEST(RandomNames, HaveTheLengthAndTheAlphabet) {
  EXPECT_EQ(tdbUtil::generate_random_string(0, "ab"), "");
  EXPECT_EQ(tdbUtil::generate_random_string(-1, "ab"), "");
  EXPECT_EQ(tdbUtil::generate_random_string(3, ""), "");
  EXPECT_EQ(tdbUtil::generate_random_string(4, "a"), "aaaa");
}

}  // namespace
}  // namespace tooldb

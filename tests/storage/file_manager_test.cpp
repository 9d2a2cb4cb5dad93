#include "tooldb/file_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/storage/faulty_file_system.h"
#include "tests/storage/scratch_folder.h"
#include "tooldb/storage/folder_batch.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Key;
using testing::Pair;

/// A tool whose description tells its versions apart.
tdbTool tool(const std::string& code, const char* description = "") {
  tdbTool result(code);
  result.SetDescr(description);
  return result;
}

class FileManager : public testing::Test {
 protected:
  FileManager() {
    std::string folder = folder_;
    EXPECT_TRUE(files_.Create(folder, error_) && files_.Init(folder, error_));
  }

  bool Insert(tdbTool item) { return files_.InsertItem(&item, error_); }
  bool Update(const std::string& previous_code, tdbTool item) {
    return files_.UpdateItem(previous_code, &item, error_);
  }

  ScratchFolder scratch_;
  std::string folder_ = scratch_.Path("lib");
  tdbFileManager files_;
  tdbError error_{7};
};

TEST_F(FileManager, RefusesCodesThatMakeNoFileName) {
  const std::pair<std::string, std::string> kCodes[] = {
#ifdef _WIN32
      {"\xC3", ""},  // no text in the code page of the tests
      {"com1", ""},
#else
      {"\xC3", "\xC3.ktf"},
      {std::string(251, 'x'), std::string(251, 'x') + ".ktf"},
#endif
      {"", ""},     {"a\x7f", ""}, {std::string(252, 'x'), ""}, {std::string(60, '/'), ""},
  };
  Insert(tool("old"));
  for (const auto& [code, file] : kCodes) {
    const bool refused = file.empty();
    EXPECT_EQ(Insert(tool(code)), !refused);
    EXPECT_EQ(scratch_.Files("lib").contains(file), !refused);
    tdbTool same = tool(code);
    EXPECT_TRUE(files_.DeleteItem(&same, error_) || refused);
    EXPECT_TRUE(files_.DeleteItem(&same, error_) || refused) << "gone already";
    EXPECT_NE(Update("old", tool(code)), refused);
    EXPECT_THAT(error_.message, HasSubstr(refused ? folder_ : ""));
    EXPECT_TRUE(refused || Update(code, tool("old")));
    EXPECT_THAT(scratch_.Files("lib"), ElementsAre(Key("old.ktf")));
  }
}

TEST_F(FileManager, MovesAndRewrites) {
  Insert(tool("A/1", "first"));
  EXPECT_TRUE(Update("A/1", tool("A{{47}}1", "one file for both")));
  EXPECT_TRUE(Update("A/1", tool("B", "moved")));
  EXPECT_THAT(scratch_.Files("lib"), ElementsAre(Pair("B.ktf", HasSubstr("moved"))));
  EXPECT_FALSE(Update("A/1", tool("C"))) << "there is nothing to move";
  EXPECT_THAT(error_.message, HasSubstr("A{{47}}1.ktf"));
}

TEST_F(FileManager, SaysWhatIsMissing) {
  std::string text;
  EXPECT_FALSE(files_.ReadItem("A", ".ktf", text, error_));
  EXPECT_EQ(error_.message, folder_ + "/A.ktf");
  std::string missing = scratch_.Path("missing");
  EXPECT_FALSE(files_.Init(missing, error_));
  EXPECT_FALSE(files_.Available(error_));
  EXPECT_EQ(error_.message, "");
  EXPECT_EQ(error_.code, 7) << "the caller's";
}

TEST_F(FileManager, IsOpenForReadingWhereItCannotWrite) {
  Insert(tool("A"));
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  disk.Let([](const FileCall& call) { return call.kind == FileCall::Kind::kCreate; });
  tdbFileManager read_only;
  EXPECT_FALSE(read_only.Init(folder_, error_));
  std::string text;
  EXPECT_TRUE(read_only.ReadItem("A", ".ktf", text, error_));
}

TEST_F(FileManager, FlushesTheFolderOncePerBatch) {
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  int flushes = 0;
  disk.Let([&](const FileCall& call) {
    flushes += call.kind == FileCall::Kind::kFlush && call.path == folder_ ? 1 : 0;
    return false;
  });
  Insert(tool("A"));
  EXPECT_EQ(flushes, 1);
  {
    FolderBatch outer(files_);
    for (const char* code : {"B", "C", "D"}) {
      FolderBatch inner(files_);
      Insert(tool(code));
      inner.Finish();
    }
    EXPECT_EQ(flushes, 1);
    outer.Finish();
    outer.Finish();
  }
  EXPECT_EQ(flushes, 2);
  {
    const FolderBatch given_up(files_);
    Insert(tool("E"));
  }
  EXPECT_EQ(flushes, 2);
  FolderBatch next(files_);
  next.Finish();
  EXPECT_EQ(flushes, 3) << "made up for";
}

TEST_F(FileManager, CopiesModelFilesWithoutHarmToOthers) {
  scratch_.MakeFolder("models");
  const std::string nose = scratch_.MakeFile("models/nose.stl", "nose");
  const std::string same = scratch_.MakeFile("models/same.stl", "same");
  scratch_.MakeFile("lib/nose.stl", "of another tool");
  scratch_.MakeFile("lib/same.stl", "same");
  tdbTool owner("A");
  for (const std::string& path : {nose, same, nose, scratch_.Path("missing.stl"), std::string()}) {
    auto* holder = new tdbToolHolder(3);
    holder->SetShapeFilePath(path.c_str());
    owner.AddItem(holder);
  }
  EXPECT_FALSE(files_.CopyShapeFileToFolder(&owner, folder_, error_));
  EXPECT_THAT(error_.message, HasSubstr("missing.stl"));
  const std::vector<std::string> expected = {folder_ + "/nose (2).stl", folder_ + "/same.stl",
                                             folder_ + "/nose (2).stl",
                                             scratch_.Path("missing.stl"), ""};
  for (unsigned i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(owner.GetItem(i)->GetShapeFilePath(), expected[i]) << i;
  }
  auto files = scratch_.Files("lib");
  EXPECT_EQ(files.size(), 3U);
  EXPECT_EQ(files["nose.stl"], "of another tool");
  EXPECT_EQ(files["nose (2).stl"], "nose");
}

}  // namespace
}  // namespace tooldb

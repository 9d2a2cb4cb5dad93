#include "tooldb/xml/model_path.h"

#include <gtest/gtest.h>

#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

struct PathCase {
  const char* name;
  std::vector<std::string> search;
  const char* path;
  const char* stored;
  const char* resolved = nullptr;  // the path itself unless given
};

const PathCase kPaths[] = {
    {"NoSearchPaths", {}, "/lib/a.stl", "/lib/a.stl"},
    {"InFolder", {"/lib"}, "/lib/a.stl", "a.stl"},
    {"Below", {"/lib/"}, "/lib/x/y/a.stl", "x/y/a.stl"},
    {"Beside", {"/lib"}, "/library/a.stl", "/library/a.stl"},
    {"TheFolderItself", {"/lib"}, "/lib/", "/lib/"},
    {"Root", {"/"}, "/a.stl", "a.stl"},
    {"Windows", {"C:\\lib"}, "C:\\lib\\x\\a.stl", "x\\a.stl"},
    {"MixedSeparators", {"C:/lib"}, "C:\\lib\\x\\a.stl", "x\\a.stl", "C:/lib/x\\a.stl"},
    {"OtherDrive", {"C:\\lib"}, "D:\\lib\\a.stl", "D:\\lib\\a.stl"},
    {"CaseMatters", {"/Lib"}, "/lib/a.stl", "/lib/a.stl"},
    {"NameLikeADrive", {"/lib"}, "/lib/C:a.stl", "/lib/C:a.stl"},
    {"SecondFolder", {"/one", "/two"}, "/two/a.stl", "/two/a.stl"},
    {"FirstFolderTwice", {"/one", "/one/sub"}, "/one/sub/a.stl", "sub/a.stl"},
    {"RelativeStaysAndIsFound", {"/lib"}, "x/a.stl", "x/a.stl", "/lib/x/a.stl"},
    {"NoSubfolders", {"__nosubfolders__/lib"}, "/lib/a.stl", "a.stl"},
    {"NoSubfoldersMarkerBehind", {"/lib__nosubfolders__"}, "/lib/a.stl", "a.stl"},
    {"NoSubfoldersBelow", {"/lib__nosubfolders__"}, "/lib/x/a.stl", "/lib/x/a.stl"},
    {"NoSubfoldersLeavesRoom", {"/one__nosubfolders__", "/two"}, "/two/x/a.stl", "x/a.stl"},
    {"SingleFile", {"__files__/far/a.stl"}, "/far/a.stl", "a.stl"},
    {"SingleFileAmongFolders", {"/far/a.stl__files__", "/lib"}, "/lib/b.stl", "b.stl"},
    {"SingleFileClaimsItsName", {"/far/a.stl__files__", "/lib"}, "/lib/a.stl", "/lib/a.stl"},
    {"KeptAbsolute", {"/lib", "__absfiles__/lib/x"}, "/lib/x/a.stl", "/lib/x/a.stl"},
    {"KeptAbsoluteAmongFolders", {"__absfiles__/far", "/lib"}, "/lib/a.stl", "a.stl"},
    {"RelativeIsFoundNowhere", {"__files__/far/a.stl", "__absfiles__/lib"}, "b.stl", "b.stl"},
    {"EmptyEntryAmongFolders", {"", "/lib"}, "/lib/a.stl", "a.stl"},
    {"OnlyAMarker", {"__files__", "__nosubfolders__", ""}, "/a.stl", "/a.stl"},
    {"Empty", {"/lib"}, "", ""},
};

class ModelPath : public testing::TestWithParam<PathCase> {};
TEST_P(ModelPath, IsStoredAndFoundAgain) {
  const PathCase& row = GetParam();
  EXPECT_EQ(stored_model_path(row.path, row.search), row.stored);
  const std::string found = resolved_model_path(row.stored, row.search);
  EXPECT_EQ(found, row.resolved == nullptr ? row.path : row.resolved);
  EXPECT_EQ(stored_model_path(found, row.search), row.stored);
}
INSTANTIATE_TEST_SUITE_P(Paths, ModelPath, testing::ValuesIn(kPaths), row_name<PathCase>);

}  // namespace
}  // namespace tooldb

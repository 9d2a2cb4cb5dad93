#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/geom/row_name.h"
#include "tests/storage/scratch_folder.h"

namespace tooldb {
namespace {

/// A host with one kind of filter beside it, and what it prints.
struct FilterCase {
  std::string_view name;
  std::string_view library;  ///< file of the build; "text": no library at all
  std::string_view printed;
};

constexpr FilterCase kFilters[] = {
    {"Whole", "filter_whole",
     "init\nfilter in\nexit\n1 filtered\ninit\ntext\nexit\n[Tools|*.x]\nin host\n"},
    {"AnswersNull", "filter_null", "init\nfilter in\nexit\n0 \ninit\ntext\nexit\n[]\nin host\n"},
    {"Refuses", "filter_refusing", "init\n0 untouched\ninit\n[]\nin host\n"},
    {"WithoutInit", "filter_without_init", "0 untouched\n[]\nin host\n"},
    {"WithoutFilter", "filter_without_filter", "0 untouched\ninit\nexit\n[]\nin host\n"},
    {"WithoutExit", "filter_without_exit", "0 untouched\ninit\ntext\n[Tools|*.x]\nin host\n"},
    {"NoLibrary", "text", "0 untouched\n[]\nin host\n"},
    {"NoFile", "", "0 untouched\n[]\nin host\n"},
};

class ImportFilter : public testing::TestWithParam<FilterCase> {};

TEST_P(ImportFilter, IsTheFirstAndCalledAsFarAsItGoes) {
  const ScratchFolder scratch;
  const std::string folder = scratch.MakeFolder("host");
  const std::string library(GetParam().library);
  if (!library.empty()) scratch.MakeFile("host/b.tlf", "no library");
  if (library.starts_with("filter")) {
    std::filesystem::copy_file(std::string(TOOLDB_FILTER_FOLDER) + '/' + library + ".tlf",
                               folder + "/a.tlf");
  }
  const std::filesystem::path program = TOOLDB_FILTER_HOST;
  const std::string copy = folder + '/' + program.filename().string();
  std::filesystem::copy_file(program, copy);
  std::string command = '"' + copy + "\" > \"" + scratch.Path("printed") + '"';
#ifdef _WIN32
  command = '"' + command + '"';  // cmd.exe takes the outer quotes off
#endif
  EXPECT_EQ(std::system(command.c_str()), 0);
  std::string printed = scratch.Files()["printed"];
  std::erase(printed, '\r');
  EXPECT_EQ(printed, GetParam().printed);
}

INSTANTIATE_TEST_SUITE_P(Libraries, ImportFilter, testing::ValuesIn(kFilters),
                         row_name<FilterCase>);

}  // namespace
}  // namespace tooldb

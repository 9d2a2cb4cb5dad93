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

class ImportFilter : public testing::TestWithParam<FilterCase> {
 protected:
  /// What the host prints from the folder "host".
  std::string Run() {
    const std::filesystem::path program = TOOLDB_FILTER_HOST;
    const std::string copy = folder_ + '/' + program.filename().string();
    std::filesystem::copy_file(program, copy);
    std::string command = '"' + copy + "\" > \"" + scratch_.Path("printed") + '"';
#ifdef _WIN32
    command = '"' + command + '"';  // cmd.exe takes the outer quotes off
#endif
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::string printed = scratch_.Files()["printed"];
    std::erase(printed, '\r');
    return printed;
  }

  ScratchFolder scratch_;
  std::string folder_ = scratch_.MakeFolder("host");
};

TEST_P(ImportFilter, IsCalledAsFarAsItGoes) {
  const std::string library(GetParam().library);
  if (library == "text") {
    scratch_.MakeFile("host/a.tlf", "no library");
  } else if (!library.empty()) {
    std::filesystem::copy_file(std::string(TOOLDB_FILTER_FOLDER) + '/' + library + ".tlf",
                               folder_ + "/a.tlf");
  }
  EXPECT_EQ(Run(), GetParam().printed);
}

TEST_F(ImportFilter, IsTheFirstOfSeveral) {
  scratch_.MakeFile("host/b.tlf", "no library");
  std::filesystem::copy_file(std::string(TOOLDB_FILTER_FOLDER) + "/filter_whole.tlf",
                             folder_ + "/a.tlf");
  EXPECT_NE(Run().find("1 filtered"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Libraries, ImportFilter, testing::ValuesIn(kFilters),
                         row_name<FilterCase>);

}  // namespace
}  // namespace tooldb

#include "apps/text_table.h"

#include <gtest/gtest.h>

#include <sstream>

#include "apps/display_text.h"

namespace tooldb {
namespace {

TextTable sample() {
  TextTable table({{"code", false, 6}, {"diameter", true, 0}, {"description", false, 12}});
  table.AddRow({"D10", "10", "end mill"});
  table.AddRow({"\xe5\x88\x80\xe5\x85\xb7", "0.375", "a long\tdescription of a ball end mill"});
  table.AddRow({"A-code-that-is-long", "125", ""});
  return table;
}

TEST(TextTable, CutsTheWidestColumnsFirst) {
  EXPECT_EQ(sample().Text(45, false),
            "code               diameter  description\n"
            "D10                      10  end mill\n"
            "\xe5\x88\x80\xe5\x85\xb7                  0.375  a long descript\xe2\x80\xa6\n"
            "A-code-that-is-l\xe2\x80\xa6       125\n");
}

TEST(TextTable, FitsEveryWidthThatItsColumnsAllow) {
  const int least = 6 + 8 + 12 + 4;
  for (int width = 1; width < 90; ++width) {
    std::istringstream lines(sample().Text(width, false));
    for (std::string line; std::getline(lines, line);) {
      EXPECT_LE(display_width(line), std::max(width, least)) << line;
      EXPECT_FALSE(line.ends_with(' '));
    }
  }
}

TEST(TextTable, MarksTitlesForATerminal) {
  EXPECT_EQ(sample().Text(0, true).substr(0, 8), "\033[1mcode");
}

}  // namespace
}  // namespace tooldb

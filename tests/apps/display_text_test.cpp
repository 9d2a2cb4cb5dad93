#include "apps/display_text.h"

#include <gtest/gtest.h>

#include <sstream>

#include "apps/text_table.h"

namespace tooldb {
namespace {

struct TextCase {
  std::string_view text;
  std::string_view printable;
  int width;
};

constexpr TextCase kTexts[] = {
    {"", "", 0},
    {"a\tb\r\nc", "a b  c", 6},
    {"\033[31mred", "\xef\xbf\xbd[31mred", 8},
    {"\xc2\x9b!", "\xef\xbf\xbd!", 2},                            // a control character of C1
    {"\xc3\xa4\xc3\xb6", "\xc3\xa4\xc3\xb6", 2},                  // umlauts
    {"a\xcc\x88", "a\xcc\x88", 1},                                // letter and combining mark
    {"\xe5\x88\x80\xe5\x85\xb7", "\xe5\x88\x80\xe5\x85\xb7", 4},  // East Asian wide
    {"\xef\xbc\x9c", "\xef\xbc\x9c", 2},                          // full-width less-than
    {"\xf0\x9f\x94\xa9", "\xf0\x9f\x94\xa9", 2},                  // emoji
    {"x\xe4y", "x\xef\xbf\xbdy", 3},                              // Latin-1
    {"\xc0\xaf", "\xef\xbf\xbd\xef\xbf\xbd", 2},                  // overlong
    {"\xe0\x80\xaf", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd", 3},
    {"\xed\xa0\x80", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd", 3},  // surrogate
    {"\xf4\x90\x80\x80", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd", 4},
    {"a\xe5\x88", "a\xef\xbf\xbd\xef\xbf\xbd", 3},  // cut off
};

class Texts : public testing::TestWithParam<TextCase> {};
TEST_P(Texts, AreMadePrintableAndMeasured) {
  const auto& [text, shown, width] = GetParam();
  EXPECT_EQ(printable(text), shown);
  EXPECT_EQ(display_width(shown), width);
}
TEST_P(Texts, AreCutBetweenCharacters) {
  const std::string_view shown = GetParam().printable;
  for (int width = 0; width <= GetParam().width; ++width) {
    const std::string cut = cut_to_width(shown, width);
    EXPECT_LE(display_width(cut), width);
    EXPECT_EQ(printable(cut), cut) << "cut inside a character";
    EXPECT_EQ(cut == shown, width == GetParam().width || shown.empty());
  }
}
INSTANTIATE_TEST_SUITE_P(Rows, Texts, testing::ValuesIn(kTexts));

TEST(CutToWidth, KeepsWhatFitsAndMarksTheCut) {
  EXPECT_EQ(cut_to_width("end mill 10 mm", 14), "end mill 10 mm");
  EXPECT_EQ(cut_to_width("end mill 10 mm", 10), "end mill\xe2\x80\xa6");  // no blank before it
  EXPECT_EQ(cut_to_width("a\xcc\x88xy", 2), "a\xcc\x88\xe2\x80\xa6");     // the mark stays
  EXPECT_EQ(cut_to_width("\xe5\x88\x80\xe5\x85\xb7", 3), "\xe5\x88\x80\xe2\x80\xa6");
}

TEST(Wrapped, KeepsWordsWholeAndParagraphsApart) {
  EXPECT_EQ(wrapped("one two three\n\nfour", 9, 2), "  one two\n  three\n\n  four\n");
  EXPECT_EQ(wrapped("unbreakable", 5, 1), " unbreakable\n");
}

constexpr std::pair<double, std::string_view> kNumbers[] = {
    {0, "0"},
    {-0.0, "0"},
    {0.1 + 0.2, "0.3"},
    {1.0 / 3, "0.333333"},
    {123456.7, "123457"},
    {1e12, "1000000000000"},
    {0.0000125, "0.0000125"},
    {1e20, "1e+20"},
    {1e-12, "1e-12"},
};

TEST(ShownNumber, HasSixDigitsAndNoNoise) {
  for (const auto& [value, text] : kNumbers) EXPECT_EQ(shown_number(value), text);
}

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

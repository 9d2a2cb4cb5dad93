#include "filters/quantity.h"

#include <gtest/gtest.h>

#include "filters/plain_text.h"

namespace tooldb {
namespace {

// Each in millimetres.
constexpr std::pair<std::string_view, double> kLengths[] = {
    {"6.00 mm", 6},        {"6.00mm", 6},           {"0.25 in ", 6.35},
    {"0.375 \"", 9.525},   {"0.375 \u2033", 9.525}, {".375 in", 9.525},
    {"2,5 mm", 2.5},       {"25,0 \u03BCm", 0.025},  // a Greek letter
    {"25 \u00B5m", 0.025},                           // the sign for micro
    {"1 cm", 10},          {"0.5 ", 0.5},           {"1e-3 m", 1},
    {"+5 mm", 5},          {"-5 mm", -5},
};

std::optional<double> read_length(std::string_view text, LengthUnit unit) {
  const auto quantity = parse_quantity(text);
  return quantity ? length_in(*quantity, unit) : std::nullopt;
}

TEST(LengthText, IsReadInEitherUnit) {
  for (const auto& [text, mm] : kLengths) {
    EXPECT_NEAR(read_length(text, LengthUnit::kMillimetre).value_or(0), mm, 1e-9) << text;
    EXPECT_NEAR(read_length(text, LengthUnit::kInch).value_or(0), mm / 25.4, 1e-9) << text;
  }
  for (const char* text :
       {"60 deg", "1,000.5 mm", "5 furlong", "", "mm", "0x10", "inf mm", "1e999 mm", "+-5 mm"}) {
    EXPECT_FALSE(read_length(text, LengthUnit::kMillimetre)) << text;
  }
}

TEST(LengthText, KeepsItsNumberInItsOwnUnit) {
  EXPECT_EQ(read_length("0.1 in", LengthUnit::kInch), 0.1);
  EXPECT_EQ(read_length("0.1 mm", LengthUnit::kMillimetre), 0.1);
}

TEST(AngleText, HasItsUnitInManyForms) {
  for (const char* text :
       {"60", "60.00 \u00B0", "60.0000\u00B0", "60,0 deg", "60 \u00BA", "1.0471975511965976 rad"}) {
    const auto quantity = parse_quantity(text);
    ASSERT_TRUE(quantity) << text;
    EXPECT_NEAR(degrees(*quantity).value_or(0), 60, 1e-9) << text;
  }
  EXPECT_FALSE(degrees(*parse_quantity("60 mm")));
}

TEST(NumberText, HidesTheLastDigitsOfConvertedUnits) {
  EXPECT_EQ(number_text(0.37499999999999994), "0.375");
  EXPECT_EQ(number_text(100000), "100000");
  EXPECT_EQ(number_text(-1e-17), "0");
  EXPECT_EQ(exact_text(0.37499999999999994), "0.37499999999999994");
  EXPECT_EQ(exact_text(100000), "100000");
}

TEST(PlainText, MarksGetTheirFullWidthFormAndControlCharactersBecomeBlanks) {
  EXPECT_EQ(storable_line("2\" <A & B>"), "2\uFF02 \uFF1CA \uFF06 B>");
  EXPECT_EQ(storable_line(std::string_view(" A\tB\r\nC\0D\x7f", 10)), "A B C D");
  EXPECT_EQ(storable_text("A\tB\r\nC\rD"), "A\tB\nC\nD");
}

TEST(PlainText, CutsBetweenCharacters) {
  EXPECT_EQ(at_most("a\u00E9\u2033", 3), "a\u00E9");
  EXPECT_EQ(at_most("a\u00E9\u2033", 2), "a");
  EXPECT_EQ(at_most("abc", 3), "abc");
}

}  // namespace
}  // namespace tooldb

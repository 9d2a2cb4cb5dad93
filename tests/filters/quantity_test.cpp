#include "filters/quantity.h"

#include <gtest/gtest.h>

#include "filters/plain_text.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

struct LengthCase {
  std::string_view name, text;
  std::optional<double> mm;
};

const LengthCase kLengths[] = {
    {"Millimetres", "6.00 mm", 6.0},
    {"NoBlank", "6.00mm", 6.0},
    {"TrailingBlank", "0.25 in ", 6.35},
    {"InchMark", "0.375 \"", 9.525},
    {"DoublePrime", "0.375 \u2033", 9.525},
    {"DecimalComma", "2,5 mm", 2.5},
    {"GreekMicro", "25,0 \u03BCm", 0.025},
    {"MicroSign", "25 \u00B5m", 0.025},
    {"Centimetres", "1 cm", 10.0},
    {"NoUnitIsMillimetres", "0.5 ", 0.5},
    {"Exponent", "1e-3 m", 1.0},
    {"LeadingPoint", ".375 in", 9.525},
    {"Plus", "+5 mm", 5.0},
    {"Negative", "-5 mm", -5.0},
    {"ExactInch", "0.1 in", 2.54},
    {"AngleIsNoLength", "60 deg", {}},
    {"CommaAndPoint", "1,000.5 mm", {}},
    {"UnknownUnit", "5 furlong", {}},
    {"Empty", "", {}},
    {"UnitOnly", "mm", {}},
    {"Hexadecimal", "0x10", {}},
    {"Infinite", "inf mm", {}},
    {"TooLarge", "1e999 mm", {}},
    {"TwoSigns", "+-5 mm", {}},
};

class LengthText : public testing::TestWithParam<LengthCase> {};

TEST_P(LengthText, IsReadInEitherUnit) {
  const LengthCase& row = GetParam();
  const auto read = [&row](LengthUnit unit) -> std::optional<double> {
    const auto quantity = parse_quantity(row.text);
    return quantity ? length_in(*quantity, unit) : std::nullopt;
  };
  ASSERT_EQ(read(LengthUnit::kMillimetre).has_value(), row.mm.has_value());
  if (!row.mm) return;
  EXPECT_NEAR(*read(LengthUnit::kMillimetre), *row.mm, 1e-9);
  EXPECT_NEAR(*read(LengthUnit::kInch), *row.mm / 25.4, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Oddities, LengthText, testing::ValuesIn(kLengths), row_name<LengthCase>);

TEST(LengthText, KeepsItsNumberInItsOwnUnit) {
  EXPECT_EQ(*length_in(*parse_quantity("0.1 in"), LengthUnit::kInch), 0.1);
  EXPECT_EQ(*length_in(*parse_quantity("0.1 mm"), LengthUnit::kMillimetre), 0.1);
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

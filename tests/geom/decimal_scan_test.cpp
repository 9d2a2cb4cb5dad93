#include "geom/decimal_scan.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <random>
#include <string>

#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

struct NumberCase {
  const char* name;
  std::string_view text;
  double value;
  std::size_t length;  // 0: no number
};
const NumberCase kNumbers[] = {
    {"Whole", "12", 12, 2},
    {"Plus", "+1.5", 1.5, 4},
    {"Minus", "-1.5 2", -1.5, 4},
    {"NoDigitBeforeThePoint", ".25", 0.25, 3},
    {"NoDigitAfterThePoint", "5.", 5, 2},
    {"Exponent", "1.5e+01", 15, 7},
    {"UpperExponent", "1.5E-1x", 0.15, 6},
    {"ExponentWithoutDigits", "1e", 1, 1},
    {"SignedExponentWithoutDigits", "1e-", 1, 1},
    {"Tiny", "1e-30", 1e-30, 5},
    {"BelowDouble", "-1e-400", -0.0, 7},
    {"AboveDouble", "1e400", INFINITY, 5},
    {"ExponentBeyondInt", "1e99999999999", INFINITY, 13},
    {"ManyDigits", "123456789012345678901234567890", 123456789012345678901234567890.0, 30},
    {"ManyZeros", "0.0000000000000000000000000000015", 1.5e-30, 33},
    {"TwoToThe53PlusOne", "9007199254740993", 9007199254740992, 16},
    {"HalfwayNeedsEveryDigit", "9007199254740993.00000000000000000001", 9007199254740994, 37},
    {"Empty", "", 0, 0},
    {"SignAlone", "-", 0, 0},
    {"PointAlone", ".", 0, 0},
    {"ExponentAlone", "e5", 0, 0},
    {"NotANumber", "nan", 0, 0},
    {"Hexadecimal", "0x10", 0, 1},
};
class DecimalScan : public testing::TestWithParam<NumberCase> {};
TEST_P(DecimalScan, ReadsTheNearestDouble) {
  const auto& [name, text, expected, length] = GetParam();
  double value = 7;
  const char* const after = scan_decimal(text.data(), text.data() + text.size(), value);
  if (length == 0) {
    EXPECT_EQ(after, nullptr);
    EXPECT_EQ(value, 7);
    return;
  }
  EXPECT_EQ(after, text.data() + length);
  EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected));
}
INSTANTIATE_TEST_SUITE_P(Texts, DecimalScan, testing::ValuesIn(kNumbers), row_name<NumberCase>);

TEST(DecimalScanRandom, AgreesWithTheStandardLibrary) {
  std::mt19937_64 random(5);
  for (int i = 0; i < 20000; ++i) {
    const double exact =
        std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 160) - 110);
    char buffer[400];
    const auto format = i % 2 == 0 ? std::chars_format::scientific : std::chars_format::fixed;
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, exact, format, i % 25).ptr;
    double expected = 0;
    std::from_chars(buffer, end, expected);
    double value = -1;
    ASSERT_EQ(scan_decimal(buffer, end, value), end);
    ASSERT_EQ(value, expected) << std::string(buffer, end);
  }
}

}  // namespace
}  // namespace tooldb

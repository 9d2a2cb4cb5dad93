#include "geom/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>

#include "geom/decimal_scan.h"

namespace tooldb {
namespace {

TEST(NumberText, WritesTheBytesOfPrintf) {
  std::vector<double> values{0,       -0.0, 1,     -1,   0.1,     1e5,    999999.5,
                             1234567, 1e-5, 1e300, 1e-7, 0.00012, 5e-324, 1.7976931348623157e308};
  std::mt19937_64 random(7);
  for (int i = 0; i < 20000; ++i) {
    values.push_back(std::bit_cast<double>(random()));
    values.push_back(static_cast<double>(static_cast<std::int64_t>(random()) % 2000000) / 1000);
  }
  for (const double value : values) {
    if (std::isnan(value)) continue;
    char printed[512];
    std::snprintf(printed, sizeof printed, "%g", value);
    EXPECT_EQ(general_text(value), printed);
    std::snprintf(printed, sizeof printed, "%f", value);
    std::string fixed;
    append_fixed(fixed, value);
    EXPECT_EQ(fixed, printed);
  }
}

struct NumberCase {
  std::string_view text;
  double value;         // of what the text begins with
  std::size_t scanned;  // its length for a scan, which skips no blanks; 0: none
  int integer;
  bool whole;
};
constexpr NumberCase kNumbers[] = {
    {" +3 ", 3, 0, 3, true},
    {"+1.5", 1.5, 4, 1, true},
    {"+-3", 0, 0, 0, false},
    {"-0.25e2", -25, 7, 0, true},
    {"12,5", 12, 2, 12, false},
    {".25", 0.25, 3, 0, true},
    {"7.", 7, 2, 7, true},
    {"1.5E-1x", 0.15, 6, 1, false},
    {"1e", 1, 1, 1, false},
    {"1e-", 1, 1, 1, false},
    {"0x10", 0, 1, 0, false},
    {"", 0, 0, 0, false},
    {"-", 0, 0, 0, false},
    {"1e400", INFINITY, 5, 1, false},
    {"-1e400", -INFINITY, 6, -1, false},
    {"1e99999999999", INFINITY, 13, 1, false},
    {"1e-400", 0, 6, 1, false},
    {"-1e-400", -0.0, 7, -1, false},
    {"99999999999", 99999999999, 11, INT_MAX, true},
    {"-99999999999", -99999999999, 12, INT_MIN, true},
    // Halfway between two doubles, and just above.
    {"9007199254740993", 9007199254740992, 16, INT_MAX, true},
    {"9007199254740993.00000000000000000001", 9007199254740994, 37, INT_MAX, true},
};

TEST(NumberText, ReadsWhatItShould) {
  for (const auto& [text, expected, scanned, integer, whole] : kNumbers) {
    const auto bits = std::bit_cast<std::uint64_t>(expected);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(leading_number(text)), bits) << text;
    EXPECT_EQ(leading_integer(text), integer) << text;
    EXPECT_EQ(whole_number(text), whole ? std::optional(expected) : std::nullopt) << text;
    double value = 7;
    const char* const end = scan_decimal(text.data(), text.data() + text.size(), value);
    EXPECT_EQ(end, scanned > 0 ? text.data() + scanned : nullptr) << text;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(scanned > 0 ? value : expected), bits) << text;
    EXPECT_TRUE(scanned > 0 || value == 7) << text;
  }
}

TEST(DecimalScan, AgreesWithTheStandardLibrary) {
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

#include "geom/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

namespace tooldb {
namespace {

/// What printf makes of the value.
std::string printed(bool fixed, double value) {
  std::string text(512, '\0');
  const int length = fixed ? std::snprintf(text.data(), text.size(), "%f", value)
                           : std::snprintf(text.data(), text.size(), "%g", value);
  text.resize(static_cast<std::size_t>(length));
  return text;
}

double from_bits(std::uint64_t bits) {
  double value = 0;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

TEST(NumberText, WritesTheBytesOfPrintf) {
  std::vector<double> values{0,       -0.0, 1,     -1,   0.1,     1e5,    999999.5,
                             1234567, 1e-5, 1e300, 1e-7, 0.00012, 5e-324, 1.7976931348623157e308};
  std::mt19937_64 random(7);
  for (int i = 0; i < 20000; ++i) {
    values.push_back(from_bits(random()));
    values.push_back(static_cast<double>(static_cast<std::int64_t>(random()) % 2000000) / 1000);
  }
  for (const double value : values) {
    if (std::isnan(value)) continue;
    EXPECT_EQ(general_text(value), printed(false, value));
    std::string fixed;
    append_fixed(fixed, value);
    EXPECT_EQ(fixed, printed(true, value));
  }
}

struct NumberCase {
  const char* text;
  double leading;
  int integer;
  bool whole;
};

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();

TEST(NumberText, ReadsWhatItShould) {
  const NumberCase rows[] = {
      {"12.5", 12.5, 12, true},
      {" +3 ", 3, 3, true},
      {"-0.25e2", -25, 0, true},
      {"12,5", 12, 12, false},
      {"", 0, 0, false},
      {"abc", 0, 0, false},
      {"5 mm", 5, 5, false},
      {"0x10", 0, 0, false},
      {"+-3", 0, 0, false},
      {".5", 0.5, 0, true},
      {"7.", 7, 7, true},
      {"1e400", kInfinity, 1, false},
      {"-1e400", -kInfinity, -1, false},
      {"1e-400", 0, 1, false},
      {"99999999999", 99999999999, kMax, true},
      {"-99999999999", -99999999999, kMin, true},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(leading_number(row.text), row.leading) << row.text;
    EXPECT_EQ(leading_integer(row.text), row.integer) << row.text;
    EXPECT_EQ(whole_number(row.text).has_value(), row.whole) << row.text;
  }
}

}  // namespace
}  // namespace tooldb

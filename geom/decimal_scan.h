#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "geom/number_text.h"

namespace tooldb {

/// Reads the decimal number that starts at `p`: sign, digits, point, exponent. The value is the
/// nearest double; infinite or 0 where double has no such number.
/// @return where the number ends; null, and `value` untouched, when there is none
///
/// Up to 19 digits are gathered in a whole number. When that is below 2^53 and the power of ten at
/// most 22, both are exact as doubles and one operation rounds right (Clinger, "How to read
/// floating point numbers accurately", 1990); anything else takes the slower general way.
inline const char* scan_decimal(const char* p, const char* end, double& value) {
  static constexpr std::array<double, 23> kPowersOfTen = {
      1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
      1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  constexpr std::uint64_t kExact = std::uint64_t{1} << 53;
  constexpr int kLargestExponent = 9999;
  const auto digit = [&] { return static_cast<unsigned>(static_cast<unsigned char>(*p)) - '0'; };

  const bool negative = p < end && *p == '-';
  if (p < end && (*p == '-' || *p == '+')) ++p;
  const char* const first = p;
  std::uint64_t mantissa = 0;
  for (; p < end && digit() <= 9; ++p) mantissa = mantissa * 10 + digit();
  auto digits = p - first;
  std::ptrdiff_t power = 0;
  if (p < end && *p == '.') {
    const char* const fraction = ++p;
    for (; p < end && digit() <= 9; ++p) mantissa = mantissa * 10 + digit();
    power = fraction - p;
    digits -= power;
  }
  if (digits == 0) return nullptr;
  if (p < end && (*p == 'e' || *p == 'E')) {
    const char* const mark = p++;
    const bool down = p < end && *p == '-';
    if (p < end && (*p == '-' || *p == '+')) ++p;
    const char* const exponent_digits = p;
    int exponent = 0;
    for (; p < end && digit() <= 9; ++p) {
      if (exponent < kLargestExponent) exponent = exponent * 10 + static_cast<int>(digit());
    }
    power += down ? -exponent : exponent;
    if (p == exponent_digits) p = mark;
  }
  double magnitude = 0;
  if (digits <= 19 && mantissa < kExact && power >= -22 && power <= 22) {
    magnitude = static_cast<double>(mantissa);
    if (power < 0) {
      magnitude /= kPowersOfTen[static_cast<std::size_t>(-power)];
    } else {
      magnitude *= kPowersOfTen[static_cast<std::size_t>(power)];
    }
  } else {
    magnitude = leading_number(std::string_view(first, static_cast<std::size_t>(p - first)));
  }
  value = negative ? -magnitude : magnitude;
  return p;
}

}  // namespace tooldb

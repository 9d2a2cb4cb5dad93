#pragma once

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <system_error>

#include "geom/number_text.h"

namespace tooldb {

namespace decimal_scan {

// Eight characters at once, the first in the lowest byte.
inline std::uint64_t eight_at(const char* p) {
  std::uint64_t word = 0;
  std::memcpy(&word, p, 8);
  return word;
}

inline bool are_digits(std::uint64_t eight) {
  constexpr std::uint64_t kHigh = 0xF0F0F0F0F0F0F0F0;
  // A digit is 0x30 to 0x39: its high half is 3, and still is after 6 is added.
  return ((eight & kHigh) | (((eight + 0x0606060606060606) & kHigh) >> 4)) == 0x3333333333333333;
}

// Adds neighbours up: to pairs, then all four pairs in two multiplications.
inline std::uint64_t value_of(std::uint64_t eight) {
  constexpr std::uint64_t kPair = 0x000000FF000000FF;
  eight -= 0x3030303030303030;
  eight = eight * 10 + (eight >> 8);
  return ((eight & kPair) * 0x000F424000000064 + (eight >> 16 & kPair) * 0x0000271000000001) >> 32;
}

}  // namespace decimal_scan

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
    if constexpr (std::endian::native == std::endian::little) {
      for (; end - p >= 8; p += 8) {
        const std::uint64_t eight = decimal_scan::eight_at(p);
        if (!decimal_scan::are_digits(eight)) break;
        mantissa = mantissa * 100000000 + decimal_scan::value_of(eight);
      }
    }
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
    const auto read = std::from_chars(first, p, magnitude);
    if (read.ec == std::errc::result_out_of_range) {
      magnitude = leading_number(std::string_view(first, static_cast<std::size_t>(p - first)));
    }
  }
  value = negative ? -magnitude : magnitude;
  return p;
}

}  // namespace tooldb

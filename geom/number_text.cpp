#include "geom/number_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace tooldb {
namespace {

// "%f" of the largest double has 309 digits before the point.
constexpr std::size_t kLongestNumber = 400;

void append_number(std::string& out, double value, std::chars_format format) {
  std::array<char, kLongestNumber> buffer;  // NOLINT(*-member-init): filled by to_chars
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, 6);
  out.append(buffer.data(), end.ptr);
}

bool is_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

std::string_view without_leading_blanks(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view without_blanks(std::string_view text) {
  text = without_leading_blanks(text);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view without_plus(std::string_view text) {
  const bool plus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
  return plus ? text.substr(1) : text;
}

}  // namespace

void append_general(std::string& out, double value) {
  append_number(out, value, std::chars_format::general);
}

void append_fixed(std::string& out, double value) {
  append_number(out, value, std::chars_format::fixed);
}

void append_integer(std::string& out, long long value) {
  std::array<char, 24> buffer;  // NOLINT(*-member-init): filled by to_chars
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
  out.append(buffer.data(), end.ptr);
}

std::string general_text(double value) {
  std::string text;
  append_general(text, value);
  return text;
}

double leading_number(std::string_view text) {
  text = without_plus(without_leading_blanks(text));
  double value = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end.ec == std::errc::result_out_of_range) {
    // A tiny number is 0; only a huge one has a digit other than 0 before its point or exponent.
    const std::string_view number(text.data(), static_cast<std::size_t>(end.ptr - text.data()));
    const auto exponent = number.find_first_of("eE");
    const bool tiny = exponent != std::string_view::npos
                          ? number.substr(exponent + 1).starts_with('-')
                          : number.find_first_of("123456789") > number.find('.');
    const double magnitude = tiny ? 0 : std::numeric_limits<double>::infinity();
    return number.starts_with('-') ? -magnitude : magnitude;
  }
  return value;
}

int leading_integer(std::string_view text) {
  text = without_plus(without_leading_blanks(text));
  int value = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end.ec == std::errc::result_out_of_range) {
    return text.starts_with('-') ? std::numeric_limits<int>::min()
                                 : std::numeric_limits<int>::max();
  }
  return value;
}

std::optional<double> whole_number(std::string_view text) {
  text = without_plus(without_blanks(text));
  double value = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end.ec != std::errc{} || end.ptr != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

}  // namespace tooldb

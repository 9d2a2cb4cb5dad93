#include "filters/quantity.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numbers>

#include "filters/plain_text.h"

namespace tooldb {
namespace {

constexpr double kDegreesPerRadian = 180 / std::numbers::pi;

constexpr auto kUnits = std::to_array<Unit>({
    {"mm", Dimension::kLength, 1},
    {"cm", Dimension::kLength, 10},
    {"m", Dimension::kLength, 1000},
    {"um", Dimension::kLength, 0.001},
    {"\u03BCm", Dimension::kLength, 0.001},  // Greek letter mu
    {"\u00B5m", Dimension::kLength, 0.001},  // micro sign
    {"in", Dimension::kLength, kMillimetresPerInch},
    {"inch", Dimension::kLength, kMillimetresPerInch},
    {"\"", Dimension::kLength, kMillimetresPerInch},
    {"\u2033", Dimension::kLength, kMillimetresPerInch},  // double prime
    {"thou", Dimension::kLength, kMillimetresPerInch / 1000},
    {"ft", Dimension::kLength, 12 * kMillimetresPerInch},
    {"'", Dimension::kLength, 12 * kMillimetresPerInch},
    {"\u00B0", Dimension::kAngle, 1},  // degree sign
    {"\u00BA", Dimension::kAngle, 1},  // masculine ordinal, typed for it
    {"deg", Dimension::kAngle, 1},
    {"rad", Dimension::kAngle, kDegreesPerRadian},
});

constexpr std::string_view kNumberSigns = "+-0123456789.,eE";

/// Length of the number at the start of `text`; an "e" belongs to it only before digits.
std::size_t number_length(std::string_view text) {
  std::size_t end = std::min(text.find_first_not_of(kNumberSigns), text.size());
  while (end > 0 && (text[end - 1] == 'e' || text[end - 1] == 'E')) --end;
  return end;
}

std::string to_text(double value, int precision) {
  std::array<char, 64> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 std::chars_format::general, precision)
                       .ptr;
  return {buffer.data(), end};
}

}  // namespace

std::optional<double> parse_number(std::string_view text) {
  text = trimmed_text(text);
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<Quantity> parse_quantity(std::string_view text) {
  text = trimmed_text(text);
  const std::size_t length = number_length(text);
  std::string digits(text.substr(0, length));
  if (digits.find(',') != std::string::npos && digits.find('.') != std::string::npos) {
    return std::nullopt;
  }
  std::ranges::replace(digits, ',', '.');
  const std::optional<double> value = parse_number(digits);
  if (!value) return std::nullopt;
  const std::string_view unit_text = trimmed_text(text.substr(length));
  if (unit_text.empty()) return Quantity{*value, nullptr};
  const auto* unit = std::ranges::find(kUnits, unit_text, &Unit::text);
  if (unit == kUnits.end()) return std::nullopt;
  return Quantity{*value, unit};
}

double length_in(double value, LengthUnit from, LengthUnit to) {
  if (from == to) return value;
  return to == LengthUnit::kInch ? value / kMillimetresPerInch : value * kMillimetresPerInch;
}

std::optional<double> length_in(const Quantity& quantity, LengthUnit unit) {
  if (quantity.unit == nullptr) {
    return length_in(quantity.value, LengthUnit::kMillimetre, unit);
  }
  if (quantity.unit->dimension != Dimension::kLength) return std::nullopt;
  const double wanted = unit == LengthUnit::kInch ? kMillimetresPerInch : 1;
  if (quantity.unit->factor == wanted) return quantity.value;
  return quantity.value * quantity.unit->factor / wanted;
}

std::optional<double> degrees(const Quantity& quantity) {
  if (quantity.unit == nullptr) return quantity.value;
  if (quantity.unit->dimension != Dimension::kAngle) return std::nullopt;
  return quantity.value * quantity.unit->factor;
}

std::string number_text(double value) { return to_text(std::abs(value) < 1e-12 ? 0 : value, 12); }

std::string short_text(double value) { return to_text(value, 6); }

std::string exact_text(double value) {
  std::array<char, 64> buffer{};
  const double size = std::abs(value);
  const bool plain = size == 0 || (size >= 1e-5 && size < 1e15);
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 plain ? std::chars_format::fixed : std::chars_format::general)
                       .ptr;
  return {buffer.data(), end};
}

}  // namespace tooldb

#pragma once

#include <optional>
#include <string>
#include <string_view>

/// @file
/// Numbers and quantities of imported texts. The locale plays no part.

namespace tooldb {

inline constexpr double kMillimetresPerInch = 25.4;

enum class LengthUnit { kMillimetre = 0, kInch = 1 };

/// What a unit measures; kNone: the text gives no unit.
enum class Dimension { kNone, kLength, kAngle };

struct Unit {
  std::string_view text;
  Dimension dimension = Dimension::kNone;
  double factor = 1;  ///< to millimetres or degrees
};

struct Quantity {
  double value = 0;            ///< as the text has it
  const Unit* unit = nullptr;  ///< null: none is given
};

/// Reads "6.00 mm", "0.375 \"", "20,0 deg", "60.0000°" or a bare number, blanks around it ignored.
/// A comma is a decimal mark; a text with both comma and point is refused, as is an unknown unit.
std::optional<Quantity> parse_quantity(std::string_view text);

/// The number that `text` is, point as decimal mark, blanks around it ignored; nothing for
/// anything else and for what is not finite.
std::optional<double> parse_number(std::string_view text);

/// A length in `unit`; unchanged when it is in that unit already. No unit counts as millimetres,
/// and nothing is returned for an angle.
std::optional<double> length_in(const Quantity& quantity, LengthUnit unit);
double length_in(double value, LengthUnit from, LengthUnit to);
/// Degrees; no unit counts as degrees, and nothing is returned for a length.
std::optional<double> degrees(const Quantity& quantity);

/// Twelve significant digits without trailing zeros: shows 0.37499999999999994 as 0.375.
std::string number_text(double value);
/// Six significant digits, for names and messages.
std::string short_text(double value);
/// The shortest text that reads back as the same number.
std::string exact_text(double value);

}  // namespace tooldb

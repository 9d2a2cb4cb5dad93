#pragma once

#include <optional>
#include <string>
#include <string_view>

/// @file
/// Numbers as text, the same in every locale.

namespace tooldb {

/// Appends `value` as "%g" does: six significant digits, the shorter of fixed and exponent form.
void append_general(std::string& out, double value);
/// Appends `value` as "%f" does: six digits after the point.
void append_fixed(std::string& out, double value);
void append_integer(std::string& out, long long value);
std::string general_text(double value);

/// The number that `text` begins with, after white space; 0 when there is none, as atof has it.
double leading_number(std::string_view text);
/// The same for a whole number, as atoi has it; what does not fit becomes the nearest int.
int leading_integer(std::string_view text);
/// The number that `text` is, blanks around it ignored; nothing when it is anything else, not
/// finite, or beyond the range of double.
std::optional<double> whole_number(std::string_view text);

}  // namespace tooldb

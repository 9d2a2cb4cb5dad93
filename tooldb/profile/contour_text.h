#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "geom/contour_segments.h"

/// @file
/// Contours as XML text: LINE and ARC elements without an enclosing element.

namespace tooldb {

/// The contour as text, each number with six significant digits. What is shorter than that shows
/// is left out.
std::string contour_text(std::span<const ContourSegment> segments);
/// The lines through `points`, each number with six digits after its point.
std::string fixed_line_text(std::span<const Vec2> points);

/// The elements of a contour in their order.
/// @return nothing for text that is not a contour: broken XML, no element, an unknown element or
///         direction, a missing or surplus child or number, a number that is not finite
std::optional<std::vector<ContourSegment>> parse_contour(std::string_view text);

}  // namespace tooldb

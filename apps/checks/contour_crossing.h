#pragma once

#include <optional>
#include <vector>

#include "tooldb/geometry.h"

namespace tooldb {

/// A point at which a contour crosses itself; nothing when it does not. Segments that touch, or
/// that lie on one another, do not cross.
std::optional<Point2d<double>> contour_crossing(const std::vector<Point2d<double>>& contour);

}  // namespace tooldb

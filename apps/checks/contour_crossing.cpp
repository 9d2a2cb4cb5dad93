#include "apps/checks/contour_crossing.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tooldb {
namespace {

using Point = Point2d<double>;

// Twice the area of the triangle, positive when c lies to the left of a -> b.
double side(const Point& a, const Point& b, const Point& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// True when c and d lie on different sides of a -> b, neither within rounding of it.
bool separates(const Point& a, const Point& b, const Point& c, const Point& d) {
  const double length = std::hypot(b.x - a.x, b.y - a.y);
  const double slack = 1e-7 * length * (1 + length);
  const double first = side(a, b, c);
  const double second = side(a, b, d);
  return (first > slack && second < -slack) || (first < -slack && second > slack);
}

Point meeting_point(const Point& a, const Point& b, const Point& c, const Point& d) {
  const double first = side(c, d, a);
  const double part = first / (first - side(c, d, b));
  return {a.x + part * (b.x - a.x), a.y + part * (b.y - a.y)};
}

}  // namespace

// Segments are taken by their lowest point; each is compared with those that begin before it ends.
std::optional<Point> contour_crossing(const std::vector<Point>& contour) {
  if (contour.size() < 4) return std::nullopt;
  std::vector<std::size_t> segments(contour.size() - 1);
  std::iota(segments.begin(), segments.end(), std::size_t{0});
  const auto low = [&](std::size_t i) { return std::min(contour[i].y, contour[i + 1].y); };
  const auto high = [&](std::size_t i) { return std::max(contour[i].y, contour[i + 1].y); };
  std::ranges::sort(segments, {}, low);
  for (std::size_t i = 0; i < segments.size(); ++i) {
    const auto& a = contour[segments[i]];
    const auto& b = contour[segments[i] + 1];
    for (std::size_t j = i + 1; j < segments.size() && low(segments[j]) < high(segments[i]); ++j) {
      const auto& c = contour[segments[j]];
      const auto& d = contour[segments[j] + 1];
      if (separates(a, b, c, d) && separates(c, d, a, b)) return meeting_point(a, b, c, d);
    }
  }
  return std::nullopt;
}

}  // namespace tooldb

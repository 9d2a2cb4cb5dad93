#include "geom/polygons.h"

#include <algorithm>
#include <cmath>
#include <polyclipping/clipper.hpp>
#include <utility>

#include "geom/crossing_test.h"
#include "geom/polyline.h"

namespace tooldb {
namespace {

using ClipperLib::cInt;
using ClipperLib::Clipper;
using ClipperLib::IntPoint;
using ClipperLib::Path;
using ClipperLib::Paths;

// A power of two, so that scaling is exact. 1023 mm from the middle is still within the range
// (2^30) where Clipper multiplies in 64 bits; beyond it takes 128 bits, exact up to 2^62.
constexpr double kScale = 1 << 20;
constexpr double kLargest = 1e6;
constexpr double kMiterLimit = 2;

struct Box {
  Vec2 low{HUGE_VAL, HUGE_VAL};
  Vec2 high{-HUGE_VAL, -HUGE_VAL};
  bool valid = true;

  void Add(std::span<const Vec2> points) {
    for (Vec2 p : points) {
      // A NaN fails each comparison, so it is refused here too.
      valid = valid && std::abs(p.x) <= kLargest && std::abs(p.y) <= kLargest;
      low = {std::min(low.x, p.x), std::min(low.y, p.y)};
      high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
  }
  void Add(const Rings& rings) {
    for (const Polyline& ring : rings) Add(ring);
  }
};

// Moves between coordinates and Clipper's whole numbers about the middle of the input.
class Grid {
 public:
  explicit Grid(const Box& box) : middle_(0.5 * (box.low + box.high)) {}

  Path ToPath(std::span<const Vec2> points) const {
    Path path;
    path.reserve(points.size());
    for (Vec2 p : points) path.emplace_back(Rounded(p.x - middle_.x), Rounded(p.y - middle_.y));
    return path;
  }
  Paths ToPaths(const Rings& rings) const {
    Paths paths;
    for (const Polyline& ring : rings) paths.push_back(ToPath(ring));
    return paths;
  }
  Rings ToRings(const Paths& paths) const {
    Rings rings;
    for (const Path& path : paths) rings.push_back(ToRing(path));
    return rings;
  }
  Polyline ToRing(const Path& path) const {
    Polyline ring;
    ring.reserve(path.size() + 1);  // room to close it
    for (const IntPoint& p : path) {
      ring.push_back({middle_.x + static_cast<double>(p.X) / kScale,
                      middle_.y + static_cast<double>(p.Y) / kScale});
    }
    return ring;
  }

 private:
  static cInt Rounded(double v) {
    const double scaled = v * kScale;
    return static_cast<cInt>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
  }

  Vec2 middle_;
};

Paths united(const Paths& paths) {
  Clipper clipper(ClipperLib::ioStrictlySimple);
  clipper.AddPaths(paths, ClipperLib::ptSubject, true);
  Paths result;
  clipper.Execute(ClipperLib::ctUnion, result, ClipperLib::pftNonZero, ClipperLib::pftNonZero);
  return result;
}

std::optional<Rings> combine(ClipperLib::ClipType operation, const Rings& a, const Rings& b) {
  Box box;
  box.Add(a);
  box.Add(b);
  if (!box.valid) return std::nullopt;
  try {
    const Grid grid(box);
    Clipper clipper(ClipperLib::ioStrictlySimple);
    const bool has_a = clipper.AddPaths(grid.ToPaths(a), ClipperLib::ptSubject, true);
    const bool has_b = clipper.AddPaths(grid.ToPaths(b), ClipperLib::ptClip, true);
    if (!has_a && !has_b) return Rings{};
    Paths result;
    if (!clipper.Execute(operation, result, ClipperLib::pftNonZero, ClipperLib::pftNonZero)) {
      return std::nullopt;
    }
    return grid.ToRings(result);
  } catch (const ClipperLib::clipperException&) {
    return std::nullopt;
  }
}

// Clipper's offset turns every path so that outer rings grow, but it takes each for simple.
Paths offset_paths(std::span<const Vec2> contour, double distance, const Grid& grid) {
  const double moved = distance * kScale;
  ClipperLib::ClipperOffset offset(kMiterLimit, std::max(0.25, 0.01 * std::abs(moved)));
  const Path path = grid.ToPath(contour);
  if (surely_does_not_cross(contour)) {
    offset.AddPath(path, ClipperLib::jtMiter, ClipperLib::etClosedPolygon);
  } else {
    offset.AddPaths(united({path}), ClipperLib::jtMiter, ClipperLib::etClosedPolygon);
  }
  Paths result;
  offset.Execute(result, moved);
  return result;
}

std::vector<Polyline> closed_outer_rings(const Paths& paths, const Grid& grid) {
  std::vector<std::pair<double, Polyline>> by_area;
  for (const Path& path : paths) {
    const double area = ClipperLib::Area(path);
    if (area <= 0) continue;
    Polyline ring = grid.ToRing(path);
    ring.push_back(Vec2(ring.front()));
    by_area.emplace_back(area, std::move(ring));
  }
  std::ranges::stable_sort(by_area, [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<Polyline> rings;
  rings.reserve(by_area.size());
  for (auto& [area, ring] : by_area) rings.push_back(std::move(ring));
  return rings;
}

}  // namespace

std::optional<Rings> unite(const Rings& a, const Rings& b) {
  return combine(ClipperLib::ctUnion, a, b);
}

std::optional<Rings> intersect(const Rings& a, const Rings& b) {
  return combine(ClipperLib::ctIntersection, a, b);
}

std::optional<Rings> subtract(const Rings& a, const Rings& b) {
  return combine(ClipperLib::ctDifference, a, b);
}

std::optional<Rings> exclusive_or(const Rings& a, const Rings& b) {
  return combine(ClipperLib::ctXor, a, b);
}

std::optional<Rings> clean(const Rings& rings) { return unite(rings, {}); }

std::vector<Polyline> offset_contour(std::span<const Vec2> contour, double distance) {
  Box box;
  box.Add(contour);
  if (contour.size() < 3 || !box.valid || !(std::abs(distance) <= kLargest)) return {};
  try {
    const Grid grid(box);
    return closed_outer_rings(offset_paths(contour, distance, grid), grid);
  } catch (const ClipperLib::clipperException&) {
    return {};
  }
}

}  // namespace tooldb

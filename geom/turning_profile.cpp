#include "geom/turning_profile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

#include "geom/parallel.h"
#include "geom/polygons.h"
#include "geom/polyline.h"

namespace tooldb {
namespace {

constexpr std::size_t kFacetsPerLeaf = 4096;

// The sides of the plane, as a pass sees them.
using IsAbove = bool (*)(double y);
constexpr IsAbove kPasses[] = {[](double y) { return y >= 0; }, [](double y) { return y > 0; }};

// Where an edge from above to below meets the plane: the same for both facets of the edge.
Vec2 meets_plane(const Vec3& above, const Vec3& below) {
  const double t = above.y / (above.y - below.y);
  return {above.x + t * (below.x - above.x), above.z + t * (below.z - above.z)};
}

// The piece of the plane within a facet, the body on its left in (x, z); nothing of a facet that
// meets the plane in a point.
void cut(const Facet& facet, IsAbove is_above, std::vector<LineSegment>& segments) {
  const std::array corners{facet.a, facet.b, facet.c};
  std::array<bool, 3> above{};
  for (std::size_t i = 0; i < 3; ++i) above[i] = is_above(corners[i].y);
  if (above[0] == above[1] && above[1] == above[2]) return;
  LineSegment segment;
  for (std::size_t i = 0; i < 3; ++i) {
    const std::size_t next = (i + 1) % 3;
    if (above[i] && !above[next]) segment.to = meets_plane(corners[i], corners[next]);
    if (!above[i] && above[next]) segment.from = meets_plane(corners[next], corners[i]);
  }
  if (segment.from != segment.to) segments.push_back(segment);
}

std::vector<LineSegment> cut(const std::vector<Facet>& facets, IsAbove is_above) {
  if (facets.empty()) return {};
  const Reduction reduction{kFacetsPerLeaf,
                            [&](std::size_t begin, std::size_t end) {
                              std::vector<LineSegment> segments;
                              for (std::size_t i = begin; i < end; ++i)
                                cut(facets[i], is_above, segments);
                              return segments;
                            },
                            [](std::vector<LineSegment> left, std::vector<LineSegment> right) {
                              left.insert(left.end(), right.begin(), right.end());
                              return left;
                            }};
  return reduction(0, facets.size());
}

void turn_counter_clockwise(Rings& rings) {
  for (Polyline& ring : rings) {
    if (signed_area(ring) < 0) std::ranges::reverse(ring);
  }
}

// The region of several loops: all of them filled, or with loops inside loops as holes.
Rings united(Rings loops, const TurningSection& how) {
  if (!how.holes) turn_counter_clockwise(loops);
  auto region = clean(loops);
  return region ? *std::move(region) : loops;
}

double perimeter(const Polyline& ring) {
  double sum = distance(ring.back(), ring.front());
  for (std::size_t i = 1; i < ring.size(); ++i) sum += distance(ring[i - 1], ring[i]);
  return sum;
}

// Whether a ring is narrower than the grid, as a disc or as a strip: what is left over where ends
// that lie beside each other were joined.
bool is_crumb(const Polyline& ring, double grid) {
  return std::abs(signed_area(ring)) <= grid * perimeter(ring) / 4;
}

// Largest first, closed, thinned out.
std::vector<Polyline> finished(const Rings& rings, const TurningSection& how) {
  std::vector<std::pair<double, Polyline>> by_area;
  for (const Polyline& ring : rings) {
    const double area = signed_area(ring);
    if (ring.size() < 3 || is_crumb(ring, how.grid) || (area < 0 && !how.holes)) continue;
    Polyline closed = ring;
    closed.push_back(ring.front());
    by_area.emplace_back(std::abs(area), thin_out(closed, how.tolerance));
  }
  std::ranges::stable_sort(by_area, [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<Polyline> contours;
  contours.reserve(by_area.size());
  for (auto& [area, contour] : by_area) contours.push_back(std::move(contour));
  return contours;
}

}  // namespace

void VexaTurningProfile::Add(const std::vector<Facet>& facets) {
  for (Facet f : facets) {
    if (f.n == Vec3{} || !is_finite(f.a) || !is_finite(f.b) || !is_finite(f.c)) continue;
    for (Vec3* p : {&f.a, &f.b, &f.c}) {
      if (std::abs(p->y) < weld_) p->y = 0;
    }
    const auto [low, high] = std::minmax({f.a.y, f.b.y, f.c.y});
    if (low <= 0 && high >= 0) facets_.push_back(f);
  }
}

bool VexaTurningProfile::Compute(std::vector<Polyline>& contours, const TurningSection& how) const {
  for (int pass = 0; pass < std::clamp(how.passes, 1, 2); ++pass) {
    const auto segments = cut(facets_, kPasses[pass]);
    Rings loops = build_loops(segments, {how.grid, how.max_gap, how.max_steps});
    if (how.unite) {
      loops = united(std::move(loops), how);
    } else if (!how.holes) {
      turn_counter_clockwise(loops);
    }
    std::vector<Polyline> found = finished(loops, how);
    if (found.empty()) continue;
    std::ranges::move(found, std::back_inserter(contours));
    return true;
  }
  return false;
}

}  // namespace tooldb

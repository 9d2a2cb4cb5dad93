#include "geom/revolve.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

#include "geom/euler_angles.h"
#include "geom/fresh_memory.h"
#include "geom/parallel.h"
#include "geom/polygons.h"
#include "geom/triangulation.h"

namespace tooldb {
namespace {

constexpr double kBelowAxis = -1e-6;
constexpr double kOnAxis = 1e-9;
constexpr double kFinest = 1e-6;  // of the largest radius
constexpr int kFewestFacets = 12;
constexpr std::size_t kSegmentsPerTask = 4;

// Columns of corners round the axis, and the directions halfway between them.
struct Columns {
  std::vector<Vec2> corners;  // of a whole body the last is the first
  std::vector<Vec2> middles;
  double half_step_cos = 1;

  std::size_t Steps() const { return middles.size(); }
};

Vec2 direction(double deg) { return {cos_degrees(deg), sin_degrees(deg)}; }

Columns make_columns(int ring, const Revolution& how) {
  const bool whole = how.span_deg >= 360;
  const double span = whole ? 360 : how.span_deg;
  const double start = whole ? 0 : how.start_deg;
  const int steps = whole ? ring : std::max(1, static_cast<int>(std::ceil(ring * span / 360)));
  Columns columns;
  for (int j = 0; j < steps; ++j) {
    columns.corners.push_back(direction(start + span * j / steps));
    columns.middles.push_back(direction(start + span * (j + 0.5) / steps));
  }
  columns.corners.push_back(whole ? columns.corners.front() : direction(start + span));
  columns.half_step_cos = cos_degrees(span / steps / 2);
  return columns;
}

// A piece of the outline and where its facets begin.
struct Band {
  Vec2 from;
  Vec2 to;
  std::size_t first;

  std::size_t FacetsPerStep() const { return (from.x > 0 ? 1U : 0U) + (to.x > 0 ? 1U : 0U); }
};

Vec3 corner(Vec2 p, Vec2 column) { return {p.x * column.x, p.x * column.y, p.y}; }

void fill_band(Facet* facet, const Band& band, const Columns& columns) {
  // The facets of a step lie in one plane, which stands on the chord of the step's arc.
  const double rise = band.to.y - band.from.y;
  const double run = (band.to.x - band.from.x) * columns.half_step_cos;
  const double l = std::hypot(rise, run);
  for (std::size_t j = 0; j < columns.Steps(); ++j) {
    const Vec2 here = columns.corners[j];
    const Vec2 next = columns.corners[j + 1];
    const Vec2 out = (rise / l) * columns.middles[j];
    const Vec3 normal{out.x, out.y, -run / l};
    const Vec3 a = corner(band.from, here);
    const Vec3 c = corner(band.to, next);
    if (band.from.x > 0) *facet++ = {a, corner(band.from, next), c, normal};
    if (band.to.x > 0) *facet++ = {a, c, corner(band.to, here), normal};
  }
}

// Makes a closed ring that meets the axis begin there.
void start_on_axis(Polyline& ring) {
  const auto on_axis = std::ranges::find(ring, 0.0, &Vec2::x);
  if (on_axis == ring.begin() || on_axis == ring.end()) return;
  ring.pop_back();
  std::rotate(ring.begin(), on_axis, ring.end());
  ring.push_back(Vec2(ring.front()));
}

// The outline from the axis back to the axis, or closed, material on its left.
std::optional<Polyline> tidy(std::span<const Vec2> outline) {
  Polyline points;
  for (Vec2 p : outline) {
    if (!is_finite(p) || p.x < kBelowAxis) return std::nullopt;
    if (p.x <= kOnAxis) p.x = 0;
    if (points.empty() || points.back() != p) points.push_back(p);
  }
  if (points.size() < 2) return std::nullopt;
  if (points.front() == points.back()) {
    start_on_axis(points);
  } else {
    if (points.front().x > 0) points.insert(points.begin(), {0, points.front().y});
    if (points.back().x > 0) points.push_back({0, points.back().y});
  }
  // The way back along the axis adds nothing to the integral of x dy.
  double area = 0;
  for (std::size_t i = 1; i < points.size(); ++i) {
    area += (points[i].x + points[i - 1].x) * (points[i].y - points[i - 1].y);
  }
  if (area == 0 || !std::isfinite(area)) return std::nullopt;
  if (area < 0) std::ranges::reverse(points);
  return points;
}

std::vector<Band> make_bands(const Polyline& points, std::size_t first, std::size_t steps) {
  std::vector<Band> bands;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const Band band{points[i - 1], points[i], first};
    if (band.FacetsPerStep() == 0) continue;
    first += band.FacetsPerStep() * steps;
    bands.push_back(band);
  }
  return bands;
}

// The outlines of the bodies that an outline falls into where it meets the axis.
Rings split_at_axis(const Polyline& points) {
  Rings rings;
  Polyline ring;
  for (Vec2 p : points) {
    if (p.x == 0 && ring.size() == 1 && ring.front().x == 0) ring.clear();
    ring.push_back(p);
    if (p.x > 0 || ring.size() < 3) continue;
    rings.push_back(std::exchange(ring, {p}));
  }
  if (ring.size() > 2) rings.push_back(std::move(ring));
  for (Polyline& r : rings) {
    if (r.front() == r.back()) r.pop_back();
  }
  return rings;
}

// The flat cuts of a section. The outline is not cleaned first: a corner that moved would open the
// body.
bool append_caps(std::vector<Facet>& mesh, const Polyline& outline, const Columns& columns) {
  const Rings rings = split_at_axis(outline);
  const auto triangles = triangulate(rings);
  if (!triangles) return false;
  Polyline points;
  for (const Polyline& ring : rings) points.insert(points.end(), ring.begin(), ring.end());
  const Vec2 first = columns.corners.front();
  const Vec2 last = columns.corners.back();
  for (const auto& [i, j, k] : *triangles) {
    mesh.push_back({corner(points[i], first),
                    corner(points[j], first),
                    corner(points[k], first),
                    {first.y, -first.x, 0}});
    mesh.push_back({corner(points[i], last),
                    corner(points[k], last),
                    corner(points[j], last),
                    {-last.y, last.x, 0}});
  }
  return true;
}

double largest_x(const Polyline& points) {
  double x = 0;
  for (Vec2 p : points) x = std::max(x, p.x);
  return x;
}

}  // namespace

int ring_count(double largest_radius, double chord_tolerance) {
  if (!(chord_tolerance < largest_radius)) return kFewestFacets;
  // acos(1 - s) = 2 asin(sqrt(s / 2)), which keeps its digits for small s.
  const double relative = std::max(chord_tolerance / largest_radius, kFinest);
  const double half_step = 2 * std::asin(std::sqrt(relative / 2));
  const double quarters = std::ceil(std::numbers::pi / half_step / 4 - 1e-9);
  return std::max(kFewestFacets, 4 * static_cast<int>(quarters));
}

bool revolve(std::span<const Vec2> outline, const Revolution& how, std::vector<Facet>& mesh) {
  if (!(how.span_deg > 0) || !std::isfinite(how.start_deg)) return false;
  const auto points = tidy(outline);
  if (!points) return false;
  const Columns columns = make_columns(ring_count(largest_x(*points), how.chord_tolerance), how);
  const std::size_t before = mesh.size();
  const auto bands = make_bands(*points, before, columns.Steps());
  const std::size_t after = bands.back().first + bands.back().FacetsPerStep() * columns.Steps();
  if (mesh.empty()) mesh.reserve(after);
  touch_spare(mesh, after - before);
  mesh.resize(after);
  parallel_for(bands.size(), kSegmentsPerTask, [&](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) fill_band(&mesh[bands[i].first], bands[i], columns);
  });
  if (how.span_deg >= 360 || append_caps(mesh, *points, columns)) return true;
  mesh.resize(before);
  return false;
}

}  // namespace tooldb

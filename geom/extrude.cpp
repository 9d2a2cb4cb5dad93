#include "geom/extrude.h"

#include "geom/polygons.h"
#include "geom/triangulation.h"

namespace tooldb {
namespace {

struct Band {
  double low;
  double high;
};

Vec3 at_height(Vec2 p, double y) { return {p.x, y, p.y}; }

// Rings are counter-clockwise in (x, z), which seen along Y is clockwise: what lies to the right
// of an edge is outside.
void append_walls(std::vector<Facet>& mesh, const Polyline& ring, Band band) {
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Vec2 p = ring[i];
    const Vec2 q = ring[i + 1 < ring.size() ? i + 1 : 0];
    const Vec3 p_low = at_height(p, band.low);
    const Vec3 q_high = at_height(q, band.high);
    const double l = distance(p, q);
    const Vec3 normal{(q.y - p.y) / l, 0, (p.x - q.x) / l};
    mesh.push_back({p_low, at_height(p, band.high), q_high, normal});
    mesh.push_back({p_low, q_high, at_height(q, band.low), normal});
  }
}

void append_caps(std::vector<Facet>& mesh, const Rings& rings, Band band,
                 std::span<const IndexTriangle> triangles) {
  std::vector<Vec2> points;
  for (const Polyline& ring : rings) points.insert(points.end(), ring.begin(), ring.end());
  for (const auto& [i, j, k] : triangles) {
    const Vec2 a = points[i];
    const Vec2 b = points[j];
    const Vec2 c = points[k];
    mesh.push_back(
        {at_height(a, band.low), at_height(b, band.low), at_height(c, band.low), {0, -1, 0}});
    mesh.push_back(
        {at_height(a, band.high), at_height(c, band.high), at_height(b, band.high), {0, 1, 0}});
  }
}

}  // namespace

bool extrude(std::span<const Vec2> outline, double y_min, double y_max, std::vector<Facet>& mesh) {
  if (!(y_max > y_min) || !std::isfinite(y_min) || !std::isfinite(y_max)) return false;
  const auto rings = clean({Polyline(outline.begin(), outline.end())});
  if (!rings || rings->empty()) return false;
  const auto triangles = triangulate(*rings);
  if (!triangles || triangles->empty()) return false;
  for (const Polyline& ring : *rings) append_walls(mesh, ring, {y_min, y_max});
  append_caps(mesh, *rings, {y_min, y_max}, *triangles);
  return true;
}

}  // namespace tooldb

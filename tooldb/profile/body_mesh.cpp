#include "tooldb/profile/body_mesh.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

#include "geom/extrude.h"
#include "geom/polygons.h"
#include "geom/revolve.h"
#include "geom/transform.h"
#include "tooldb/model/text.h"
#include "tooldb/profile/body_outline.h"
#include "tooldb/profile/model_file.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

// The finest chords, in parts of the outline's size: they bound the memory of a mesh.
constexpr double kFinest = 1e-6;
// What rounding leaves of points on the axis.
constexpr double kOnAxis = 1e-5;

double size_of(std::span<const ContourSegment> outline) {
  double size = 0;
  for (const ContourSegment& s : outline) {
    size = std::max({size, std::abs(s.end.x), std::abs(s.end.y)});
  }
  return size;
}

// Half of the tolerance goes to the chords of the outline, the other half to those round the axis.
Polyline chords(const Outline& outline, double tolerance) {
  return flatten(outline.segments, std::max(tolerance / 2, kFinest * size_of(outline.segments)));
}

/// What a flat body lies between, along Y.
struct Thickness {
  double low;
  double high;
};

constexpr double kTurningThickness = 5;
constexpr double kHalfBarThickness = 12.5;

Thickness usual_thickness(const tdbItem& item) {
  if (body_class(item) != BodyClass::kCutter) return {-kHalfBarThickness, kHalfBarThickness};
  const auto dimensions = body_dimensions(item);
  const auto height = std::ranges::find(dimensions, "HEIGHT", &tdbDimension::name);
  return {height == dimensions.end() ? -kTurningThickness : -height->value, 0};
}

// A parameter that may be set on any body.
std::optional<double> free_number(const tdbItem& item, const char* name, double otherwise) {
  const std::string_view text = trimmed(item.GetParam(name, ""));
  return text.empty() ? otherwise : parameter_number(text);
}

bool append_extruded(const tdbItem& item, const Polyline& outline, std::vector<Facet>& mesh) {
  const Thickness usual = usual_thickness(item);
  const auto low = free_number(item, "EXTRUDED_HMIN", usual.low);
  const auto high = free_number(item, "EXTRUDED_HMAX", usual.high);
  return low && high && extrude(outline, *low, *high, mesh);
}

bool is_ring_off_axis(const Polyline& outline) {
  return outline.front() == outline.back() &&
         std::ranges::none_of(outline, [](Vec2 p) { return p.x <= 0; });
}

// The half-section with its mirror image: growing that leaves the axis where it is.
Polyline whole_section(const Polyline& outline) {
  if (is_ring_off_axis(outline)) return outline;
  Polyline both = outline;
  std::ranges::transform(outline.rbegin(), outline.rend(), std::back_inserter(both), [](Vec2 p) {
    return Vec2{-p.x, p.y};
  });
  return both;
}

// The part of a ring on the side of the axis where the outline is drawn.
Rings right_of_axis(const Polyline& ring) {
  Vec2 low = ring.front();
  Vec2 high = ring.front();
  for (const Vec2 p : ring) {
    low = {std::min(low.x, p.x), std::min(low.y, p.y)};
    high = {std::max(high.x, p.x), std::max(high.y, p.y)};
  }
  if (high.x <= 0) return {};
  const Polyline side{{0, low.y}, {high.x, low.y}, {high.x, high.y}, {0, high.y}};
  Rings rings = intersect({ring}, {side}).value_or(Rings());
  for (Polyline& part : rings) {
    for (Vec2& p : part) p.x = p.x < kOnAxis ? 0 : p.x;
    part.push_back(Vec2(part.front()));
  }
  return rings;
}

// The outline of a turned body, grown.
Rings grown(const Polyline& outline, double by) {
  Rings rings;
  for (const Polyline& ring : tdbProfile::OffsetProfile2(whole_section(outline), by)) {
    std::ranges::move(right_of_axis(ring), std::back_inserter(rings));
  }
  return rings;
}

bool append_revolved(const Polyline& outline, const BodyMesh& how, std::vector<Facet>& mesh) {
  const Revolution revolution{how.tolerance / 2, how.start_deg, how.span_deg};
  if (how.extension == 0) return revolve(outline, revolution, mesh);
  bool any = false;
  for (const Polyline& ring : grown(outline, how.extension)) {
    any |= revolve(ring, revolution, mesh);
  }
  return any;
}

bool append_flat(const tdbItem& item, const Polyline& outline, const BodyMesh& how,
                 std::vector<Facet>& mesh) {
  if (how.extension == 0) return append_extruded(item, outline, mesh);
  bool any = false;
  for (const Polyline& ring : tdbProfile::OffsetProfile2(outline, how.extension)) {
    any |= append_extruded(item, ring, mesh);
  }
  return any;
}

bool append_outline_mesh(const tdbItem& item, const BodyMesh& how, std::vector<Facet>& mesh) {
  const Outline outline = body_outline(item);
  if (!outline.Stands()) return false;
  const Polyline points = chords(outline, how.tolerance);
  const std::size_t before = mesh.size();
  const bool made =
      is_extruded(item) ? append_flat(item, points, how, mesh) : append_revolved(points, how, mesh);
  place_mesh(mesh, before, shape_placement(item));
  return made;
}

bool append_model_mesh(const tdbItem& item, const BodyMesh& how, std::vector<Facet>& mesh) {
  const auto triangles = model_triangles(item, how.scene);
  if (!triangles || triangles->empty()) return false;
  mesh.insert(mesh.end(), triangles->begin(), triangles->end());
  return true;
}

}  // namespace

bool append_body_mesh(tdbItem& item, const BodyMesh& how, std::vector<Facet>& mesh) {
  if (item.IsHideShape() || !(how.tolerance > 0)) return false;
  if (item.IsSTL()) return append_model_mesh(item, how, mesh);
  return body_class(item) != BodyClass::kNone && append_outline_mesh(item, how, mesh);
}

void place_mesh(std::vector<Facet>& mesh, std::size_t first,
                const Transformation<double>& position) {
  if (position == Transformation<double>()) return;
  transform_mesh(std::span(mesh).subspan(first), position);
}

Transformation<double> shape_placement(const tdbItem& item) {
  const auto* cutter = dynamic_cast<const tdbToolCutter*>(&item);
  return cutter == nullptr ? item.GetShapePos() : item.GetShapePos() * cutter->GetProfileCSys();
}

}  // namespace tooldb

#include "apps/drawing/tool_measures.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "apps/display_text.h"
#include "apps/drawing/contour_arcs.h"
#include "apps/drawing/drawing_view.h"
#include "tooldb/profile.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

using Role = Body::Role;
using Kind = tdbDimension::Kind;

constexpr double kSame = 1e-5;

bool same(double a, double b) { return std::abs(a - b) <= kSame * std::max(1.0, std::abs(b)); }

double degrees(double radians) { return radians * 180 / std::numbers::pi; }

// The straight pieces of a body's outline parallel to its axis, lowest first.
std::vector<DiameterMeasure> cylinders_of(const Body& body, const std::string& meaning) {
  std::vector<DiameterMeasure> cylinders;
  for (const Contour& contour : body.contours) {
    for (std::size_t i = 1; i < contour.size(); ++i) {
      const auto a = body.Placed(contour[i - 1]);
      const auto b = body.Placed(contour[i]);
      const double radius = std::abs(a.x);
      if (!same(std::abs(b.x), radius) || same(radius, 0) || same(a.y, b.y)) continue;
      cylinders.push_back(
          {radius, {std::min(a.y, b.y), std::max(a.y, b.y)}, meaning, false, body.role});
    }
  }
  std::ranges::sort(cylinders, {}, [](const auto& c) { return c.heights.low; });
  return cylinders;
}

// The cylinders of a shank: what is thinner than its widest part is a neck.
void add_shank_diameters(const Body& body, std::vector<DiameterMeasure>& out) {
  auto cylinders = cylinders_of(body, "shank");
  const double widest = largest_radius(body);
  for (DiameterMeasure& cylinder : cylinders) {
    if (!same(cylinder.radius, widest)) cylinder.meaning = "neck";
    const auto known = std::ranges::find_if(out, [&](const DiameterMeasure& other) {
      return other.meaning == cylinder.meaning && same(other.radius, cylinder.radius);
    });
    if (known == out.end()) out.push_back(cylinder);
  }
  if (cylinders.empty()) out.push_back({widest, axial_extent(body), "shank", false, body.role});
}

// The lowest and highest placed points of the cutter that are `radius` away from the axis.
Extent heights_at(const Body& body, double radius) {
  Extent heights{INFINITY, -INFINITY};
  for (const Contour& contour : body.contours) {
    for (const auto& point : contour) {
      const auto placed = body.Placed(point);
      if (std::abs(std::abs(placed.x) - radius) > 1e-4 * std::max(radius, 1e-3)) continue;
      heights.low = std::min(heights.low, placed.y);
      heights.high = std::max(heights.high, placed.y);
    }
  }
  return heights.low <= heights.high ? heights : axial_extent(body);
}

// Distance from the axis of a body's end at a height.
double end_radius(const Body& body, double height) {
  double radius = 0;
  for (const Contour& contour : body.contours) {
    for (const auto& point : contour) {
      const auto placed = body.Placed(point);
      if (same(placed.y, height)) radius = std::max(radius, std::abs(placed.x));
    }
  }
  return radius;
}

// The nose next to the tool, and the widest part.
void add_holder_diameters(const Body& body, std::vector<DiameterMeasure>& out) {
  const Extent extent = axial_extent(body);
  const double widest = largest_radius(body);
  const double nose = end_radius(body, extent.low);
  if (nose > 0 && !same(nose, widest)) {
    out.push_back({nose, {extent.low, extent.low}, "holder nose", false, body.role});
  }
  Extent heights = same(end_radius(body, extent.high), widest) ? Extent{extent.high, extent.high}
                                                               : heights_at(body, widest);
  for (const auto& cylinder : cylinders_of(body, "")) {
    if (same(cylinder.radius, widest)) heights = cylinder.heights;
  }
  out.push_back({widest, heights, "holder", false, body.role});
}

// The diameters of the type, and the widest part where none of them is it. What lies nearer to the
// tip than the cutting diameter is dimensioned below the tip with it.
void add_cutter_diameters(const Body& body, std::vector<DiameterMeasure>& out) {
  const double widest = largest_radius(body);
  std::vector<DiameterMeasure> own;
  bool has_cutting = false;
  double cutting_low = -INFINITY;
  for (const tdbDimension& d : tdbProfile::GetDimensions(*body.item)) {
    if (d.kind != Kind::kDiameter || !(d.value > kSame)) continue;
    const double radius = d.value / 2;
    Extent heights = heights_at(body, radius);
    const bool is_cutting = d.name == "DIAMETER";
    if (is_cutting) cutting_low = heights.low;
    has_cutting = has_cutting || is_cutting;
    // Of two diameters of one size the later is the upper one.
    const bool is_again =
        std::ranges::any_of(own, [&](const auto& o) { return o.radius == radius; });
    if (is_again) heights.low = heights.high;
    const bool is_below = is_cutting || heights.low < cutting_low;
    own.push_back({radius, heights, is_cutting ? "" : d.meaning, is_below});
  }
  if (std::ranges::none_of(own, [&](const auto& o) { return same(o.radius, widest); })) {
    own.push_back({widest, heights_at(body, widest), has_cutting ? "widest" : "", !has_cutting});
  }
  std::ranges::move(own, std::back_inserter(out));
}

// The band of heights of the edge that cuts.
std::optional<Extent> cutting_band(const Body& body) {
  std::vector<Contour> pieces;
  const auto& cutter = dynamic_cast<const tdbToolCutter&>(*body.item);
  if (!tdbProfile::HilightCuttingProfile(cutter, 0.01 * axial_extent(body).Size(), pieces)) {
    return std::nullopt;
  }
  Extent band{INFINITY, -INFINITY};
  for (const Contour& piece : pieces) {
    for (const auto& point : piece) {
      band.low = std::min(band.low, body.Placed(point).y);
      band.high = std::max(band.high, body.Placed(point).y);
    }
  }
  return band.low < band.high ? std::optional(band) : std::nullopt;
}

// What reaches where, over all bodies.
struct Reach {
  std::optional<Extent> cutters;
  std::optional<Extent> shanks;
  std::optional<double> nose;  ///< of the lowest holder
  double cutting_radius = 0;
};

void widen(std::optional<Extent>& total, const Extent& extent) {
  if (!total) total = extent;
  total->low = std::min(total->low, extent.low);
  total->high = std::max(total->high, extent.high);
}

Reach reach_of(const std::vector<Body>& bodies) {
  Reach reach;
  for (const Body& body : bodies) {
    const Extent extent = axial_extent(body);
    if (body.role == Role::kCutter) {
      widen(reach.cutters, extent);
      reach.cutting_radius = std::max(reach.cutting_radius, largest_radius(body));
    } else if (body.role == Role::kShank) {
      widen(reach.shanks, extent);
    } else {
      reach.nose = std::min(reach.nose.value_or(extent.low), extent.low);
    }
  }
  return reach;
}

// The height at which the shank becomes wider than the cutter: so deep the tool goes.
std::optional<double> shoulder_of(const std::vector<Body>& bodies, double cutting_radius) {
  std::optional<double> shoulder;
  for (const Body& body : bodies) {
    if (body.role != Role::kShank) continue;
    for (const Contour& contour : body.contours) {
      for (const auto& point : contour) {
        const auto placed = body.Placed(point);
        if (std::abs(placed.x) <= cutting_radius * (1 + 1e-3) + 2e-3) continue;
        // The cone to the wide part begins where the outline leaves the neck.
        shoulder = std::min(shoulder.value_or(placed.y), placed.y);
      }
    }
  }
  return shoulder;
}

LengthMeasure* known_length(std::vector<LengthMeasure>& lengths, const Extent& span) {
  const double slack = kSame * span.Size();
  const auto known = std::ranges::find_if(lengths, [&](const LengthMeasure& other) {
    return std::abs(other.span.low - span.low) <= slack &&
           std::abs(other.span.high - span.high) <= slack;
  });
  return known == lengths.end() ? nullptr : &*known;
}

void add_length(std::vector<LengthMeasure>& lengths, const Extent& span, std::string meaning) {
  if (span.Size() <= kSame * std::max(std::abs(span.low), std::abs(span.high))) return;
  if (LengthMeasure* const known = known_length(lengths, span)) {
    known->meaning += ", " + meaning;
  } else {
    lengths.push_back({span, std::move(meaning)});
  }
}

// The middles of the cutter's straight edges that have an angle to the axis, lowest first.
std::vector<Point2d<double>> edges_at_angle(const Body& body, double from_axis) {
  std::vector<Point2d<double>> middles;
  for (const Contour& contour : body.contours) {
    for (std::size_t i = 1; i < contour.size(); ++i) {
      const auto& a = contour[i - 1];
      const auto& b = contour[i];
      const double angle = degrees(std::atan2(std::abs(b.x - a.x), std::abs(b.y - a.y)));
      const bool is_along_axis = same(a.x, 0) && same(b.x, 0);
      if (is_along_axis || std::abs(angle - from_axis) > 0.05) continue;
      middles.push_back(body.Placed({(a.x + b.x) / 2, (a.y + b.y) / 2}));
    }
  }
  std::ranges::sort(middles, {}, &Point2d<double>::y);
  return middles;
}

double angle_from_axis(const tdbDimension& d) {
  if (d.kind == Kind::kAngleTotal) return d.value / 2;
  return d.kind == Kind::kAngleFromFace ? 90 - d.value : std::abs(d.value);
}

bool is_angle(Kind kind) {
  return kind == Kind::kAngleTotal || kind == Kind::kAngleFromAxis || kind == Kind::kAngleFromFace;
}

// "118° point angle, total": what an angle means is always said.
std::string angle_note(const tdbDimension& d) {
  const char* const meaning = d.kind == Kind::kAngleTotal      ? ", total"
                              : d.kind == Kind::kAngleFromAxis ? " per side"
                                                               : ", from the face";
  return shown_number(d.value) + "\u00b0 " + d.meaning + meaning;
}

// Angles of one size belong to one edge after another, from the tip upwards.
void add_angle_notes(const Body& body, std::vector<NoteMeasure>& notes) {
  std::vector<double> taken;
  for (const tdbDimension& d : tdbProfile::GetDimensions(*body.item)) {
    if (!is_angle(d.kind) || !(d.value != 0) || std::isnan(d.value)) continue;
    for (const auto& at : edges_at_angle(body, angle_from_axis(d))) {
      if (std::ranges::find(taken, at.y) != taken.end()) continue;
      taken.push_back(at.y);
      notes.push_back({at, angle_note(d)});
      break;
    }
  }
}

// A value of the outline as the type's own dimension has it: outlines are rounded to six digits.
double snapped(const std::vector<tdbDimension>& dimensions, double value) {
  for (const tdbDimension& d : dimensions) {
    const double own = d.kind == Kind::kDiameter ? d.value / 2 : d.value;
    if (!is_angle(d.kind) && std::abs(own - value) <= kSame * value) return own;
  }
  return value;
}

void add_radius_notes(const Body& body, std::vector<NoteMeasure>& notes) {
  const auto dimensions = tdbProfile::GetDimensions(*body.item);
  std::vector<double> known;
  for (const ContourArc& arc : contour_arcs(body.item->GetProfileXml())) {
    const double radius = arc.Radius();
    if (std::ranges::any_of(known, [&](double r) { return std::abs(r - radius) < 1e-4 * r; })) {
      continue;
    }
    known.push_back(radius);
    notes.push_back({body.Placed(arc.Middle()), "R" + shown_number(snapped(dimensions, radius))});
  }
}

std::vector<DiameterMeasure> diameters_of(const std::vector<Body>& bodies) {
  std::vector<DiameterMeasure> diameters;
  for (const Body& body : bodies) {
    if (!body.IsAlongAxis()) continue;
    if (body.role == Role::kCutter) add_cutter_diameters(body, diameters);
    if (body.role == Role::kShank) add_shank_diameters(body, diameters);
    if (body.role == Role::kHolder) add_holder_diameters(body, diameters);
  }
  return diameters;
}

std::vector<LengthMeasure> lengths_of(const std::vector<Body>& bodies, tdbTool& tool) {
  std::vector<LengthMeasure> lengths;
  const Reach reach = reach_of(bodies);
  if (!reach.cutters) {
    const ViewExtent extent = extent_of(bodies);
    add_length(lengths, extent.along, "length");
    return lengths;
  }
  const double tip = reach.cutters->low;
  for (const Body& body : bodies) {
    if (body.role != Role::kCutter) continue;
    if (const auto band = cutting_band(body)) {
      add_length(lengths, {tip, band->high}, "cutting length");
    }
  }
  // Where the shank begins to be wider right above the edge, the cutting length says it all.
  const auto shoulder = shoulder_of(bodies, reach.cutting_radius);
  if (shoulder && known_length(lengths, {tip, *shoulder}) == nullptr) {
    add_length(lengths, {tip, *shoulder}, "usable length");
  }
  if (reach.nose) add_length(lengths, {tip, *reach.nose}, "stickout");
  if (reach.shanks) add_length(lengths, {tip, reach.shanks->high}, "overall length");
  const double programmed = tool.GetAbsPosCutter(0)(2, 3);
  add_length(lengths, {programmed, 0}, reach.nose ? "gauge length" : "to the tool origin");
  std::ranges::stable_sort(lengths, {}, [](const auto& l) { return l.span.Size(); });
  return lengths;
}

std::vector<NoteMeasure> notes_of(const std::vector<Body>& bodies) {
  std::vector<NoteMeasure> notes;
  for (const Body& body : bodies) {
    if (body.role != Role::kCutter) continue;
    add_radius_notes(body, notes);
    add_angle_notes(body, notes);
  }
  return notes;
}

}  // namespace

Measures measures_of(const std::vector<Body>& bodies, tdbTool& tool) {
  const auto has = [&](Role role) {
    return std::ranges::find(bodies, role, &Body::role) != bodies.end();
  };
  const bool is_assembly = has(Role::kHolder) && has(Role::kCutter);
  return {lengths_of(bodies, tool), diameters_of(bodies), notes_of(bodies),
          is_assembly ? "gauge line" : "tool origin"};
}

std::string dimension_value(const tdbDimension& d) {
  if (d.kind == Kind::kText) return d.text;
  if (std::isnan(d.value)) return {};
  std::string value = shown_number(d.value);
  switch (d.kind) {
    case Kind::kDiameter:
      return "\u2300" + value;
    case Kind::kRadius:
      return "R" + value;
    case Kind::kAngleTotal:
      return value + "\u00b0 total";
    case Kind::kAngleFromAxis:
      return value + "\u00b0 from the axis";
    case Kind::kAngleFromFace:
      return value + "\u00b0 from the face";
    default:
      return value;
  }
}

std::string dimension_text(const tdbDimension& d) {
  // A tip that is a point may be kept as a diameter of next to nothing.
  const bool is_point = d.kind == Kind::kDiameter && std::abs(d.value) < kSame;
  if (d.kind == Kind::kChoice || is_point || (d.kind != Kind::kText && !(d.value != 0))) return {};
  const std::string value = dimension_value(d);
  return value.empty() ? "" : d.meaning + "  " + value;
}

}  // namespace tooldb

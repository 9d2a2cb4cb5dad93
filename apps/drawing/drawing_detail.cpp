#include "apps/drawing/drawing_detail.h"

#include <algorithm>
#include <cmath>

#include "apps/drawing/drawing.h"

namespace tooldb {
namespace {

using Role = Body::Role;

constexpr double kReadable = 8;  // a cutter that is wider on the paper needs no detail
constexpr double kLongest = 3;   // of the area against the width of the cutter
constexpr double kMargin = 1.1;
constexpr double kSmallestMark = 3;
constexpr double kTextHeight = 3.4;
constexpr const char* kName = "A";

const Body* lowest_cutter(const std::vector<Body>& bodies) {
  const Body* lowest = nullptr;
  for (const Body& body : bodies) {
    if (body.role != Role::kCutter || !body.IsAlongAxis()) continue;
    if (lowest == nullptr || axial_extent(body).low < axial_extent(*lowest).low) lowest = &body;
  }
  return lowest;
}

// How far from the tip there is something to dimension.
double height_of_measures(const Measures& measures, double tip, double most) {
  double height = 0;
  const auto reach = [&](double y) {
    if (y - tip <= most) height = std::max(height, y - tip);
  };
  for (const DiameterMeasure& d : measures.diameters) {
    if (d.role == Role::kCutter) reach(d.heights.low);
  }
  for (const NoteMeasure& note : measures.notes) reach(note.at.y);
  return height;
}

}  // namespace

ViewExtent DetailArea::Extent() const {
  return {{centre.y - radius, centre.y + radius}, {centre.x - radius, centre.x + radius}};
}

bool DetailArea::Holds(const Point2d<double>& point) const {
  return std::hypot(point.x - centre.x, point.y - centre.y) <= radius * (1 + 1e-6);
}

std::optional<DetailArea> detail_area(const std::vector<Body>& bodies, const Measures& measures,
                                      const DrawingView& view) {
  const Body* const cutter = lowest_cutter(bodies);
  if (cutter == nullptr || !cutter->is_revolved) return std::nullopt;
  const double axis = cutter->Placed({0, 0}).x;
  const Extent extent = axial_extent(*cutter);
  const double width = 2 * (largest_radius(*cutter) - std::abs(axis));
  if (width <= 0 || view.Length(width) >= kReadable) return std::nullopt;
  const double needed = height_of_measures(measures, extent.low, kLongest * width);
  const double height = std::min(extent.Size(), std::max(1.2 * needed, 0.6 * width));
  return DetailArea{{axis, extent.low + height / 2}, kMargin * std::hypot(width, height) / 2};
}

Measures measures_in(const DetailArea& area, Measures& measures) {
  Measures inside;
  const auto holds_diameter = [&](const DiameterMeasure& d) {
    return d.role == Role::kCutter && area.Holds({area.centre.x + d.radius, d.heights.low});
  };
  const auto holds_note = [&](const NoteMeasure& note) { return area.Holds(note.at); };
  std::ranges::copy_if(measures.diameters, std::back_inserter(inside.diameters), holds_diameter);
  std::ranges::copy_if(measures.notes, std::back_inserter(inside.notes), holds_note);
  std::erase_if(measures.diameters, holds_diameter);
  std::erase_if(measures.notes, holds_note);
  return inside;
}

void mark_detail(SvgSheet& sheet, const DrawingView& view, const DetailArea& area) {
  const PaperPoint centre = view.Paper(area.centre);
  const double radius = std::max(view.Length(area.radius), kSmallestMark);
  sheet.Circle("dim", centre, radius);
  const double diagonal = radius * std::sqrt(0.5) + 0.5;
  sheet.Text("", {centre.x + diagonal, centre.y + diagonal + kTextHeight}, kTextHeight,
             Anchor::kStart, kName);
}

void draw_detail(SvgSheet& sheet, const DrawingView& view, const DetailArea& area,
                 const std::vector<Body>& bodies, const Measures& measures) {
  const PaperPoint centre = view.Paper(area.centre);
  const double radius = view.Length(area.radius);
  sheet.BeginClip(centre, radius);
  draw_parts(sheet, view, bodies);
  draw_axis(sheet, view);
  sheet.EndClip();
  sheet.Circle("dim", centre, radius);
  sheet.Text("", {centre.x, centre.y - radius - 2}, kTextHeight, Anchor::kMiddle,
             std::string(kName) + "  " + view.ScaleText());
  draw_dimensions(sheet, view, bodies, measures);
}

}  // namespace tooldb

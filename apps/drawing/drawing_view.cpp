#include "apps/drawing/drawing_view.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace tooldb {
namespace {

// The scales of technical drawings (ISO 5455), from large to small.
constexpr std::array kScales = {50.0,     20.0,      10.0,      5.0,      2.0,
                                1.0,      1 / 2.0,   1 / 5.0,   1 / 10.0, 1 / 20.0,
                                1 / 50.0, 1 / 100.0, 1 / 1000.0};

Extent across_of(const std::vector<Body>& bodies) {
  Extent extent{INFINITY, -INFINITY};
  for (const Body& body : bodies) {
    for (const Contour& contour : body.contours) {
      for (const auto& point : contour) {
        for (const double side : {1.0, -1.0}) {
          if (side < 0 && !body.is_revolved) continue;
          const double x = body.Placed({side * point.x, point.y}).x;
          extent.low = std::min(extent.low, x);
          extent.high = std::max(extent.high, x);
        }
      }
    }
  }
  return extent.low <= extent.high ? extent : Extent();
}

Extent along_of(const std::vector<Body>& bodies) {
  Extent extent{INFINITY, -INFINITY};
  for (const Body& body : bodies) {
    if (body.contours.empty()) continue;
    const Extent own = axial_extent(body);
    extent.low = std::min(extent.low, own.low);
    extent.high = std::max(extent.high, own.high);
  }
  return extent.low <= extent.high ? extent : Extent();
}

}  // namespace

DrawingView::DrawingView(const Field& field, const std::vector<Body>& bodies, double unit,
                         bool is_lying)
    : unit_(unit),
      is_lying_(is_lying),
      along_(along_of(bodies)),
      across_(across_of(bodies)),
      centre_{field.corner.x + field.width / 2, field.corner.y + field.height / 2} {
  const double wide = (is_lying ? along_ : across_).Size() * unit;
  const double high = (is_lying ? across_ : along_).Size() * unit;
  const auto fits = [&](double scale) {
    return wide * scale <= field.width && high * scale <= field.height;
  };
  const auto scale = std::ranges::find_if(kScales, fits);
  scale_ = scale == kScales.end() ? std::min(field.width / wide, field.height / high) : *scale;
}

bool DrawingView::ShowsOrigin() const {
  const double slack = 0.02 * along_.Size();
  return !is_lying_ && 0 >= along_.low - slack && 0 <= along_.high + slack;
}

PaperPoint DrawingView::Paper(const Point2d<double>& point) const {
  const double across = Length(point.x - (across_.low + across_.high) / 2);
  const double along = Length(point.y - (along_.low + along_.high) / 2);
  if (is_lying_) return {centre_.x + along, centre_.y + across};
  return {centre_.x + across, centre_.y - along};
}

std::string DrawingView::ScaleText() const {
  return scale_ >= 1 ? fmt::format("{:.6g}:1", scale_) : fmt::format("1:{:.6g}", 1 / scale_);
}

}  // namespace tooldb

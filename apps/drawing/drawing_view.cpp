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

constexpr Extent kNothing = {INFINITY, -INFINITY};

void widen(Extent& extent, double value) {
  extent.low = std::min(extent.low, value);
  extent.high = std::max(extent.high, value);
}

}  // namespace

ViewExtent extent_of(const std::vector<Body>& bodies) {
  ViewExtent extent{kNothing, kNothing};
  for (const Body& body : bodies) {
    for (const Contour& contour : body.contours) {
      for (const auto& point : contour) {
        for (const double side : {1.0, -1.0}) {
          if (side < 0 && !body.is_revolved) continue;
          const auto placed = body.Placed({side * point.x, point.y});
          widen(extent.across, placed.x);
          widen(extent.along, placed.y);
        }
      }
    }
  }
  return extent.along.low <= extent.along.high ? extent : ViewExtent();
}

DrawingView::DrawingView(const Field& field, const ViewExtent& extent, double unit, bool is_lying)
    : unit_(unit),
      is_lying_(is_lying),
      extent_(extent),
      centre_{field.corner.x + field.width / 2, field.corner.y + field.height / 2} {
  const double wide = (is_lying ? extent.along : extent.across).Size() * unit;
  const double high = (is_lying ? extent.across : extent.along).Size() * unit;
  const auto fits = [&](double scale) {
    return wide * scale <= field.width && high * scale <= field.height;
  };
  const auto scale = std::ranges::find_if(kScales, fits);
  scale_ = scale == kScales.end() ? std::min(field.width / wide, field.height / high) : *scale;
}

bool DrawingView::ShowsHeight(double height) const {
  const double slack = 0.02 * extent_.along.Size();
  return height >= extent_.along.low - slack && height <= extent_.along.high + slack;
}

PaperPoint DrawingView::Paper(const Point2d<double>& point) const {
  const double across = Length(point.x - (extent_.across.low + extent_.across.high) / 2);
  const double along = Length(point.y - (extent_.along.low + extent_.along.high) / 2);
  if (is_lying_) return {centre_.x + along, centre_.y + across};
  return {centre_.x + across, centre_.y - along};
}

std::string DrawingView::ScaleText() const {
  return scale_ >= 1 ? fmt::format("{:.6g}:1", scale_) : fmt::format("1:{:.6g}", 1 / scale_);
}

}  // namespace tooldb

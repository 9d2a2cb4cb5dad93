#include <algorithm>
#include <cmath>

#include "apps/display_text.h"
#include "apps/drawing/contour_arcs.h"
#include "apps/drawing/drawing.h"
#include "apps/drawing/tool_measures.h"
#include "tooldb/profile.h"

namespace tooldb {
namespace {

constexpr double kTextHeight = 3;

// The centre of an insert, which is that of its area: every shape repeats itself around it.
Point2d<double> centre_of(const Contour& contour) {
  double area = 0;
  Point2d<double> sum;
  for (std::size_t i = 0; i < contour.size(); ++i) {
    const auto& a = contour[i];
    const auto& b = contour[(i + 1) % contour.size()];
    const double cross = a.x * b.y - b.x * a.y;
    area += cross;
    sum = {sum.x + cross * (a.x + b.x), sum.y + cross * (a.y + b.y)};
  }
  return area == 0 ? contour.front() : Point2d<double>{sum.x / (3 * area), sum.y / (3 * area)};
}

double value_of(const std::vector<tdbDimension>& dimensions, std::string_view name) {
  const auto found = std::ranges::find(dimensions, name, &tdbDimension::name);
  return found == dimensions.end() ? 0 : found->value;
}

void draw_leader(SvgSheet& sheet, PaperPoint target, PaperPoint label, const std::string& text) {
  sheet.Line("dim", label, target);
  sheet.Arrow(target, label);
  const bool is_left = label.x < target.x;
  sheet.Text("", {label.x + (is_left ? -1 : 1), label.y + 1}, kTextHeight,
             is_left ? Anchor::kEnd : Anchor::kStart, text);
}

// The inscribed circle, the nose and the cutting corner of an insert.
void draw_insert(SvgSheet& sheet, const DrawingView& view, const Body& body) {
  const auto dimensions = tdbProfile::GetDimensions(*body.item);
  const PaperPoint centre = view.Paper(body.Placed(centre_of(body.contours.front())));
  const double inscribed = value_of(dimensions, "DIAMETER");
  if (inscribed > 0) {
    const double radius = view.Length(inscribed / 2);
    sheet.Circle("hidden", centre, radius);
    draw_leader(sheet, {centre.x + 0.7071 * radius, centre.y - 0.7071 * radius},
                {centre.x + radius + 14, centre.y - radius - 12},
                "\u2300" + shown_number(inscribed) + "  inscribed circle");
  }
  const PaperPoint nose = view.Paper(body.Placed({0, 0}));
  const double radius = value_of(dimensions, "FILLET");
  if (radius > 0) {
    draw_leader(sheet, nose, {nose.x - 8, nose.y - 14}, "R" + shown_number(radius) + "  nose");
  }
  const double angle = value_of(dimensions, "ANGLE");
  if (angle > 0) {
    sheet.Text("", {nose.x - 9, nose.y + 12}, kTextHeight, Anchor::kEnd,
               shown_number(angle) + "\u00b0  included (total)");
  }
}

// The overall size of the plates, above and at the right of them.
void draw_size(SvgSheet& sheet, const DrawingView& view) {
  const Extent& along = view.Along();
  const Extent& across = view.Across();
  const PaperPoint low = view.Paper({across.low, along.low});
  const PaperPoint high = view.Paper({across.high, along.high});
  const double row = std::max(low.y, high.y) + 12;
  for (const double x : {low.x, high.x}) sheet.Line("extension", {x, row - 11}, {x, row + 1.2});
  sheet.Line("dim", {low.x, row}, {high.x, row});
  sheet.Arrow({low.x, row}, {high.x, row});
  sheet.Arrow({high.x, row}, {low.x, row});
  sheet.Text("", {(low.x + high.x) / 2, row - 0.8}, kTextHeight, Anchor::kMiddle,
             shown_number(along.Size()));
  const double column = std::max(low.x, high.x) + 12;
  for (const double y : {low.y, high.y}) {
    sheet.Line("extension", {column - 11, y}, {column + 1.2, y});
  }
  sheet.Line("dim", {column, low.y}, {column, high.y});
  sheet.Arrow({column, low.y}, {column, high.y});
  sheet.Arrow({column, high.y}, {column, low.y});
  const std::string text = shown_number(across.Size());
  sheet.Text("", {column - 0.8, (low.y + high.y) / 2 + text_width(text, kTextHeight) / 2},
             kTextHeight, Anchor::kStart, text, 90);
}

}  // namespace

void draw_plate_dimensions(SvgSheet& sheet, const DrawingView& view,
                           const std::vector<Body>& bodies) {
  draw_size(sheet, view);
  for (const Body& body : bodies) {
    const bool is_insert = !body.is_revolved && body.role == Body::Role::kCutter;
    if (is_insert) draw_insert(sheet, view, body);
  }
}

}  // namespace tooldb

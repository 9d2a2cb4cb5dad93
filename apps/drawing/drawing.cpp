#include "apps/drawing/drawing.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "apps/drawing/drawing_detail.h"
#include "tooldb/tool.h"

namespace tooldb {
namespace {

// A sheet of A4, upright or lying as the tool does, millimetres.
struct Paper {
  double width;
  double height;
};
constexpr Paper kUpright = {210, 297};
constexpr Paper kLying = {297, 210};
constexpr double kMargin = 8;
constexpr double kTitleHeight = 66;
// Room for the dimensions at the sides, above and below.
constexpr double kLeft = 50;
constexpr double kRight = 46;
constexpr double kAbove = 14;
constexpr double kBelow = 28;
// Of the detail, at the lower edge, and of its dimensions above and below it.
constexpr double kDetailHeight = 90;
constexpr double kDetailAbove = 8;
constexpr double kDetailBelow = 26;
constexpr double kSideView = 60;  // of a lone insert
constexpr double kLeastGain = 2;  // a detail of less than so much the scale is not worth its room
constexpr double kMillimetresPerInch = 25.4;

// Chords of an arc are this small against the tool, and against its thinnest part.
constexpr double kArcsPerView = 4000;
constexpr double kArcsPerRadius = 400;

DrawingView::Field field_on(const Paper& paper) {
  return {{kMargin + kLeft, kMargin + kAbove},
          paper.width - 2 * kMargin - kLeft - kRight,
          paper.height - 2 * kMargin - kTitleHeight - kAbove - kBelow};
}

DrawingView::Field field_above_detail() {
  DrawingView::Field field = field_on(kUpright);
  field.height -= kDetailHeight - kBelow;
  return field;
}

DrawingView::Field field_of_detail() {
  const double top = kUpright.height - kMargin - kTitleHeight - kDetailHeight;
  return {{kMargin, top + kDetailAbove},
          kUpright.width - 2 * kMargin,
          kDetailHeight - kDetailAbove - kDetailBelow};
}

// Arcs as smooth as the paper shows them: the chord tolerance follows the size of the tool.
std::vector<Body> bodies_to_draw(tdbTool& tool) {
  double size = 0;
  double thinnest = INFINITY;
  for (const Body& body : bodies_of(tool, fine_tolerance(tool))) {
    const double radius = largest_radius(body);
    size = std::max({size, radius, axial_extent(body).Size()});
    if (radius > 0) thinnest = std::min(thinnest, radius);
  }
  if (size <= 0) return {};
  return bodies_of(tool, std::min(size / kArcsPerView, thinnest / kArcsPerRadius));
}

bool is_plate(const Body& body) { return !body.is_revolved; }

double millimetres_per_unit(const tdbTool& tool) {
  return tool.GetUnitOfMeasurement() == 0 ? 1 : kMillimetresPerInch;
}

std::optional<Point2d<double>> programmed_point(tdbTool& tool) {
  if (tool.GetCutterCount() == 0) return std::nullopt;
  const auto place = tool.GetAbsPosCutter(0);
  return Point2d<double>{place(0, 3), place(2, 3)};
}

// Draws a tool upright, with a detail of its tip where that is too small. Returns the scale.
std::string draw_upright(SvgSheet& sheet, const std::vector<Body>& bodies, tdbTool& tool) {
  const double unit = millimetres_per_unit(tool);
  const ViewExtent extent = extent_of(bodies);
  const auto point = programmed_point(tool);
  Measures measures = measures_of(bodies, tool);
  DrawingView view(field_on(kUpright), extent, unit, false);
  std::optional<DetailArea> area = detail_area(bodies, measures, view);
  if (area) {
    const DrawingView smaller(field_above_detail(), extent, unit, false);
    const DrawingView detail(field_of_detail(), area->Extent(), unit, false);
    if (detail.Scale() >= kLeastGain * smaller.Scale()) {
      view = smaller;
      draw_detail(sheet, detail, *area, bodies, measures_in(*area, measures));
      if (point && area->Holds(*point)) draw_programmed_point(sheet, detail, *point);
    } else {
      area.reset();
    }
  }
  draw_parts(sheet, view, bodies);
  draw_axis(sheet, view);
  if (area) mark_detail(sheet, view, *area);
  if (point && !(area && area->Holds(*point))) draw_programmed_point(sheet, view, *point);
  draw_dimensions(sheet, view, bodies, measures);
  return view.ScaleText();
}

// Draws a turning tool with its tip at the left. Returns the scale.
std::string draw_lying(SvgSheet& sheet, const std::vector<Body>& bodies, tdbTool& tool) {
  DrawingView::Field field = field_on(kLying);
  if (is_lone_insert(bodies)) field.width -= kSideView;
  const DrawingView view(field, extent_of(bodies), millimetres_per_unit(tool), true);
  draw_parts(sheet, view, bodies);
  draw_axis(sheet, view);
  if (const auto point = programmed_point(tool)) draw_programmed_point(sheet, view, *point);
  draw_plate_dimensions(sheet, view, bodies);
  return view.ScaleText();
}

}  // namespace

std::string drawing_of(tdbTool& tool) {
  std::vector<Body> bodies = bodies_to_draw(tool);
  std::erase_if(bodies, [](const Body& body) { return body.contours.empty(); });
  if (bodies.empty()) return {};

  const bool is_lying = std::ranges::any_of(bodies, is_plate);
  const Paper& paper = is_lying ? kLying : kUpright;
  const double inner_width = paper.width - 2 * kMargin;
  SvgSheet sheet(paper.width, paper.height);
  sheet.Rectangle("frame", {kMargin, kMargin}, inner_width, paper.height - 2 * kMargin);
  const std::string scale =
      is_lying ? draw_lying(sheet, bodies, tool) : draw_upright(sheet, bodies, tool);
  draw_title_block(sheet, {kMargin, paper.height - kMargin - kTitleHeight}, inner_width,
                   kTitleHeight, tool, bodies, scale);
  return sheet.Document(tool.GetCode());
}

}  // namespace tooldb

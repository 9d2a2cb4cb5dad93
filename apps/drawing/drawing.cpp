#include "apps/drawing/drawing.h"

#include <algorithm>
#include <cmath>

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
constexpr double kLeft = 46;
constexpr double kRight = 48;
constexpr double kAbove = 14;
constexpr double kBelow = 26;
constexpr double kMillimetresPerInch = 25.4;

// Chords of an arc are this small against the tool, and against its thinnest part.
constexpr double kArcsPerView = 4000;
constexpr double kArcsPerRadius = 400;

DrawingView::Field field_on(const Paper& paper) {
  return {{kMargin + kLeft, kMargin + kAbove},
          paper.width - 2 * kMargin - kLeft - kRight,
          paper.height - 2 * kMargin - kTitleHeight - kAbove - kBelow};
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

}  // namespace

std::string drawing_of(tdbTool& tool, std::vector<std::string>& refused) {
  std::vector<Body> bodies = bodies_to_draw(tool);
  for (const Body& body : bodies_of(tool, fine_tolerance(tool))) {
    if (body.refusal.empty()) continue;
    refused.push_back("item '" + body.item->GetName() + "': " + body.refusal);
  }
  std::erase_if(bodies, [](const Body& body) { return body.contours.empty(); });
  if (bodies.empty()) return {};

  const bool is_lying = std::ranges::any_of(bodies, is_plate);
  const Paper& paper = is_lying ? kLying : kUpright;
  const double inner_width = paper.width - 2 * kMargin;
  const double unit = tool.GetUnitOfMeasurement() == 0 ? 1 : kMillimetresPerInch;
  const DrawingView view(field_on(paper), bodies, unit, is_lying);
  SvgSheet sheet(paper.width, paper.height);
  sheet.Rectangle("frame", {kMargin, kMargin}, inner_width, paper.height - 2 * kMargin);
  draw_parts(sheet, view, bodies, tool);
  if (is_lying) {
    draw_plate_dimensions(sheet, view, bodies);
  } else {
    draw_dimensions(sheet, view, bodies, tool);
  }
  draw_title_block(sheet, {kMargin, paper.height - kMargin - kTitleHeight}, inner_width,
                   kTitleHeight, tool, bodies, view.ScaleText());
  return sheet.Document(tool.GetCode());
}

}  // namespace tooldb

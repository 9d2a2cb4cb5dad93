#include <algorithm>
#include <array>
#include <cmath>

#include "apps/drawing/drawing.h"
#include "tooldb/profile.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

using Role = Body::Role;
using Polygons = std::vector<std::vector<PaperPoint>>;

constexpr double kAxisOverhang = 4;
// A corner that turns less belongs to a curve and is no edge.
constexpr double kEdgeTurn = 0.3;

std::string_view style_of(Role role) {
  return role == Role::kCutter ? "cutter" : role == Role::kShank ? "shank" : "holder";
}

// One side of a turned body: 1 the right, -1 the left of the tool's axis.
Polygons half(const DrawingView& view, const Body& body, double side) {
  const double turned = body.place(2, 2) < 0 ? -side : side;
  Polygons polygons;
  for (const Contour& contour : body.contours) {
    auto& polygon = polygons.emplace_back();
    for (const auto& p : contour) polygon.push_back(view.Paper(body.Placed({turned * p.x, p.y})));
  }
  return polygons;
}

Polygons whole(const DrawingView& view, const Body& body) {
  Polygons polygons = half(view, body, 1);
  if (!body.is_revolved) return polygons;
  for (auto& polygon : half(view, body, -1)) polygons.push_back(std::move(polygon));
  return polygons;
}

double turn_at(const Point2d<double>& a, const Point2d<double>& b, const Point2d<double>& c) {
  const double cross = (b.x - a.x) * (c.y - b.y) - (b.y - a.y) * (c.x - b.x);
  const double dot = (b.x - a.x) * (c.x - b.x) + (b.y - a.y) * (c.y - b.y);
  return std::abs(std::atan2(cross, dot));
}

class PartsPainter {
 public:
  PartsPainter(SvgSheet& sheet, const DrawingView& view, const std::vector<Body>& bodies)
      : sheet_(sheet), view_(view), bodies_(bodies) {}

  // In section the shank is seen inside the holder, from outside it is hidden by it.
  void Paint() {
    for (const Role role : {Role::kHolder, Role::kShank, Role::kCutter}) {
      ForEach(role, [&](const Body& body) { PaintSection(body); });
    }
    for (const Role role : {Role::kCutter, Role::kShank, Role::kHolder}) {
      ForEach(role, [&](const Body& body) { PaintOutside(body); });
    }
    if (HasHolder()) {
      ForEach(Role::kShank, [&](const Body& body) { PaintHidden(body); });
    }
    ForEach(Role::kCutter, [&](const Body& body) { PaintCuttingEdge(body); });
  }

 private:
  template <class Use>
  void ForEach(Role role, Use use) {
    for (const Body& body : bodies_) {
      if (body.role == role) use(body);
    }
  }

  static bool HasHalves(const Body& body) { return body.is_revolved && body.IsAlongAxis(); }

  bool HasHolder() const {
    return std::ranges::any_of(bodies_, [](const Body& b) { return b.role == Role::kHolder; });
  }

  void PaintSection(const Body& body) {
    const Polygons area = HasHalves(body) ? half(view_, body, -1) : whole(view_, body);
    sheet_.Area(style_of(body.role), area);
    sheet_.Area(std::string(style_of(body.role)) + "-hatch", area);
    sheet_.Area("outline", area);
  }

  void PaintOutside(const Body& body) {
    if (!HasHalves(body)) return;
    const Polygons area = half(view_, body, 1);
    sheet_.Area(style_of(body.role), area);
    PaintEdges(body);
    for (const auto& polygon : area) sheet_.Polyline("outline", polygon);
  }

  void PaintEdges(const Body& body) {
    for (const Contour& contour : body.contours) {
      for (std::size_t i = 1; i + 1 < contour.size(); ++i) {
        const auto& p = contour[i];
        if (p.x <= 0 || turn_at(contour[i - 1], p, contour[i + 1]) < kEdgeTurn) continue;
        const double side = body.place(2, 2) < 0 ? -p.x : p.x;
        sheet_.Line("edge", view_.Paper(body.Placed({0, p.y})),
                    view_.Paper(body.Placed({side, p.y})));
      }
    }
  }

  void PaintHidden(const Body& body) {
    if (!HasHalves(body)) return;
    for (const auto& polygon : half(view_, body, 1)) sheet_.Polyline("hidden", polygon);
  }

  void PaintCuttingEdge(const Body& body) {
    const auto& cutter = dynamic_cast<const tdbToolCutter&>(*body.item);
    std::vector<Contour> pieces;
    const double tolerance = (view_.Along().Size() + view_.Across().Size()) / 4000;
    if (!tdbProfile::HilightCuttingProfile(cutter, tolerance, pieces)) return;
    for (const double side : {1.0, -1.0}) {
      if (side < 0 && !body.is_revolved) break;
      for (const Contour& piece : pieces) {
        std::vector<PaperPoint> line;
        for (const auto& p : piece) line.push_back(view_.Paper(body.Placed({side * p.x, p.y})));
        sheet_.Polyline("cutting", line);
      }
    }
  }

  SvgSheet& sheet_;
  const DrawingView& view_;
  const std::vector<Body>& bodies_;
};

}  // namespace

void draw_parts(SvgSheet& sheet, const DrawingView& view, const std::vector<Body>& bodies) {
  PartsPainter(sheet, view, bodies).Paint();
}

void draw_axis(SvgSheet& sheet, const DrawingView& view) {
  PaperPoint low = view.Paper({0, view.Along().low});
  PaperPoint high = view.Paper({0, view.Along().high});
  double& first = view.IsLying() ? low.x : low.y;
  double& last = view.IsLying() ? high.x : high.y;
  const double overhang = first < last ? -kAxisOverhang : kAxisOverhang;
  first += overhang;
  last -= overhang;
  sheet.Line("axis", low, high);
}

void draw_programmed_point(SvgSheet& sheet, const DrawingView& view, const Point2d<double>& point) {
  const PaperPoint at = view.Paper(point);
  constexpr double kRadius = 1.3;
  sheet.Circle("dim", at, kRadius);
  sheet.Line("dim", {at.x - 1.8 * kRadius, at.y}, {at.x + 1.8 * kRadius, at.y});
  sheet.Line("dim", {at.x, at.y - 1.8 * kRadius}, {at.x, at.y + 1.8 * kRadius});
}

}  // namespace tooldb

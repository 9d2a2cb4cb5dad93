#include <algorithm>
#include <cmath>
#include <numbers>

#include "apps/display_text.h"
#include "apps/drawing/contour_arcs.h"
#include "apps/drawing/drawing.h"
#include "tooldb/profile.h"

namespace tooldb {
namespace {

constexpr double kTextHeight = 3;
constexpr double kOffset = 1;
constexpr double kOverhang = 1.2;
constexpr double kEdgeDistance = 9;   // of the dimension line of an edge from it
constexpr double kSizeDistance = 12;  // of those of the whole from it
constexpr double kAngleRadius = 14;
constexpr double kLeader = 19;
constexpr double kSideGap = 24;  // between an insert and its side view
constexpr double kSheetMargin = 9;
constexpr double kDimensioned = 25;  // a smaller insert on the paper has room for leaders only

double value_of(const std::vector<tdbDimension>& dimensions, std::string_view name) {
  const auto found = std::ranges::find(dimensions, name, &tdbDimension::name);
  return found == dimensions.end() || std::isnan(found->value) ? 0 : found->value;
}

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

void draw_leader(SvgSheet& sheet, PaperPoint target, PaperPoint label, const std::string& text) {
  sheet.Line("dim", label, target);
  sheet.Arrow(target, label);
  const bool is_left = label.x < target.x;
  sheet.Text("", {label.x + (is_left ? -1 : 1), label.y + 1}, kTextHeight,
             is_left ? Anchor::kEnd : Anchor::kStart, text);
}

// A dimension line along a -> b at a distance to the left of it, as one sees it on the paper.
void draw_aligned(SvgSheet& sheet, PaperPoint a, PaperPoint b, double distance,
                  const std::string& text) {
  const double length = std::hypot(b.x - a.x, b.y - a.y);
  if (length == 0) return;
  const PaperPoint along{(b.x - a.x) / length, (b.y - a.y) / length};
  const PaperPoint out{along.y, -along.x};
  const auto beside = [&](PaperPoint p, double by) {
    return PaperPoint{p.x + by * out.x, p.y + by * out.y};
  };
  for (const PaperPoint& end : {a, b}) {
    sheet.Line("extension", beside(end, kOffset), beside(end, distance + kOverhang));
  }
  const PaperPoint from = beside(a, distance);
  const PaperPoint to = beside(b, distance);
  sheet.Line("dim", from, to);
  sheet.Arrow(from, to);
  sheet.Arrow(to, from);
  // The text stands above the line, and is never upside down.
  const bool is_forward = along.x > 1e-9 || (along.x > -1e-9 && along.y < 0);
  const double turn = std::atan2(-along.y, along.x) * 180 / std::numbers::pi;
  const PaperPoint middle{(from.x + to.x) / 2, (from.y + to.y) / 2};
  const PaperPoint up = is_forward ? out : PaperPoint{-out.x, -out.y};
  sheet.Text("", {middle.x + kOffset * up.x, middle.y + kOffset * up.y}, kTextHeight,
             Anchor::kMiddle, text, is_forward ? turn : turn + 180);
}

// A turning insert in the plane of its face, and its dimensions.
class InsertDimensions {
 public:
  InsertDimensions(SvgSheet& sheet, const DrawingView& view, const Body& body)
      : sheet_(sheet),
        view_(view),
        body_(body),
        dimensions_(tdbProfile::GetDimensions(*body.item)),
        angle_(value_of(dimensions_, "ANGLE")),
        nose_(view.Paper(body.Placed({0, 0}))) {}

  void Draw() {
    DrawInscribedCircle();
    if (!(angle_ > 0)) return;  // a round insert has no corner, whatever its parameters say
    DrawNose();
    const bool is_large = view_.Length(value_of(dimensions_, "DIAMETER")) >= kDimensioned;
    if (is_large) {
      DrawAngle();
      DrawEdge();
    } else {
      sheet_.Text("", {nose_.x - 9, nose_.y + 12}, kTextHeight, Anchor::kEnd, AngleText());
    }
  }

 private:
  std::string AngleText() const { return shown_number(angle_) + "\u00b0  included, total"; }

  void DrawInscribedCircle() {
    const auto row = std::ranges::find(dimensions_, "DIAMETER", &tdbDimension::name);
    if (row == dimensions_.end() || !(row->value > 0)) return;
    const PaperPoint centre = view_.Paper(body_.Placed(centre_of(body_.contours.front())));
    const double radius = view_.Length(row->value / 2);
    sheet_.Circle("hidden", centre, radius);
    draw_leader(sheet_, {centre.x + 0.7071 * radius, centre.y - 0.7071 * radius},
                {centre.x + radius + 14, centre.y - radius - 12},
                "\u2300" + shown_number(row->value) + "  " + row->meaning);
  }

  void DrawNose() {
    const double radius = value_of(dimensions_, "FILLET");
    if (radius <= 0) return;
    draw_leader(sheet_, nose_, {nose_.x - 1, nose_.y - kLeader},
                "R" + shown_number(radius) + "  nose");
  }

  // The corner as it would be without the nose radius.
  Point2d<double> SharpCorner() const {
    const double radius = value_of(dimensions_, "FILLET");
    return {0, radius - radius / std::sin(HalfAngle())};
  }
  double HalfAngle() const { return angle_ / 2 * std::numbers::pi / 180; }

  // A point of an edge next to the cutting corner, or of its prolongation: `side` 1 or -1.
  PaperPoint OnEdge(double side, double distance) const {
    const auto corner = SharpCorner();
    return view_.Paper(body_.Placed(
        {side * distance * std::sin(HalfAngle()), corner.y + distance * std::cos(HalfAngle())}));
  }

  // Between the edges prolonged beyond the corner, where nothing else is.
  void DrawAngle() {
    const double radius = kAngleRadius / view_.Length(1);
    std::vector<PaperPoint> arc;
    constexpr int kSteps = 32;
    const auto corner = SharpCorner();
    for (int i = 0; i <= kSteps; ++i) {
      const double turn = HalfAngle() * (2.0 * i / kSteps - 1);
      arc.push_back(
          view_.Paper(body_.Placed({radius * std::sin(turn), corner.y - radius * std::cos(turn)})));
    }
    for (const double side : {1.0, -1.0}) {
      sheet_.Line("extension", OnEdge(side, 0), OnEdge(side, -1.1 * radius));
    }
    sheet_.Polyline("dim", arc);
    sheet_.Arrow(arc.front(), arc[2]);
    sheet_.Arrow(arc.back(), arc[kSteps - 2]);
    const PaperPoint middle = arc[kSteps / 2];
    sheet_.Text("", {middle.x - 2, middle.y + 0.35 * kTextHeight}, kTextHeight, Anchor::kEnd,
                AngleText());
  }

  void DrawEdge() {
    const double length = value_of(dimensions_, "LENGTH");
    if (length <= 0) return;
    draw_aligned(sheet_, OnEdge(1, length), OnEdge(1, 0), kEdgeDistance,
                 shown_number(length) + "  edge length");
  }

  SvgSheet& sheet_;
  const DrawingView& view_;
  const Body& body_;
  std::vector<tdbDimension> dimensions_;
  double angle_;
  PaperPoint nose_;
};

// The radii of a plate that is drawn by hand.
void draw_radii(SvgSheet& sheet, const DrawingView& view, const Body& body) {
  std::vector<double> known;
  for (const ContourArc& arc : contour_arcs(body.item->GetProfileXml())) {
    const double radius = arc.Radius();
    const auto is_same = [&](double r) { return std::abs(r - radius) < 1e-4 * r; };
    if (std::ranges::any_of(known, is_same)) continue;
    known.push_back(radius);
    const PaperPoint at = view.Paper(body.Placed(arc.Middle()));
    draw_leader(sheet, at, {at.x - 12, at.y - 10}, "R" + shown_number(radius));
  }
}

// The overall size of the plates, below and at the right of them.
void draw_size(SvgSheet& sheet, const DrawingView& view) {
  const Extent& along = view.Along();
  const Extent& across = view.Across();
  const PaperPoint low = view.Paper({across.low, along.low});
  const PaperPoint high = view.Paper({across.high, along.high});
  const auto [top, bottom] = std::minmax(low.y, high.y);
  draw_aligned(sheet, {high.x, bottom}, {low.x, bottom}, kSizeDistance, shown_number(along.Size()));
  draw_aligned(sheet, {high.x, top}, {high.x, bottom}, kSizeDistance, shown_number(across.Size()));
}

bool is_insert(const Body& body) {
  return !body.is_revolved && body.role == Body::Role::kCutter &&
         !tdbProfile::GetDimensions(*body.item).empty();
}

// At the right of the insert, as thick as it is.
void draw_side_view(SvgSheet& sheet, const DrawingView& view, const Body& insert) {
  const double thickness = value_of(tdbProfile::GetDimensions(*insert.item), "HEIGHT");
  if (thickness <= 0) return;
  const PaperPoint low = view.Paper({view.Across().low, view.Along().high});
  const PaperPoint high = view.Paper({view.Across().high, view.Along().high});
  const auto [top, bottom] = std::minmax(low.y, high.y);
  const double left = high.x + kSideGap;
  const double right = left + view.Length(thickness);
  const std::string text = shown_number(thickness) + "  thickness";
  if (right + 2 + text_width(text, kTextHeight) > sheet.Width() - kSheetMargin) return;
  const std::vector<PaperPoint> area = {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
  for (const char* const style : {"cutter", "outline"}) sheet.Area(style, {area});
  draw_aligned(sheet, {right, bottom}, {left, bottom}, kEdgeDistance, "");
  sheet.Text("", {right + 2, bottom + kEdgeDistance + 0.35 * kTextHeight}, kTextHeight,
             Anchor::kStart, text);
}

}  // namespace

bool is_lone_insert(const std::vector<Body>& bodies) {
  return bodies.size() == 1 && is_insert(bodies.front());
}

void draw_plate_dimensions(SvgSheet& sheet, const DrawingView& view,
                           const std::vector<Body>& bodies) {
  const bool is_lone = is_lone_insert(bodies);
  if (!is_lone) draw_size(sheet, view);
  for (const Body& body : bodies) {
    if (body.is_revolved || body.role != Body::Role::kCutter) continue;
    if (is_insert(body)) {
      InsertDimensions(sheet, view, body).Draw();
    } else {
      draw_radii(sheet, view, body);
    }
  }
  if (is_lone) draw_side_view(sheet, view, bodies.front());
}

}  // namespace tooldb

#include "filters/insert_plan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace tooldb {
namespace {

constexpr double kUsualInscribedCircle = 12.7;  // mm
constexpr double kUsualThickness = 4.76;        // mm

constexpr auto kShapes = std::to_array<InsertShape>({
    {'C', CuttingKind::kInsertRhombic, 80},
    {'D', CuttingKind::kInsertRhombic, 55},
    {'E', CuttingKind::kInsertRhombic, 75},
    {'F', CuttingKind::kInsertRhombic, 50},
    {'M', CuttingKind::kInsertRhombic, 86},
    {'V', CuttingKind::kInsertRhombic, 35},
    {'S', CuttingKind::kInsertRhombic, 90},
    {'A', CuttingKind::kInsertParallelogram, 85},
    {'B', CuttingKind::kInsertParallelogram, 82},
    {'K', CuttingKind::kInsertParallelogram, 55},
    {'L', CuttingKind::kInsertParallelogram, 90},
    {'T', CuttingKind::kInsertTriangle, 60},
    {'P', CuttingKind::kInsertPentagon, 108},
    {'H', CuttingKind::kInsertHexagon, 120},
    {'O', CuttingKind::kInsertOctagon, 135},
    {'W', CuttingKind::kInsertTrigon, 80},
    {'R', CuttingKind::kInsertRound, 0},
});

double sine(double angle) { return std::sin(angle * std::numbers::pi / 180); }
double cotangent(double angle) { return 1 / std::tan(angle * std::numbers::pi / 180); }

/// The inscribed circle of an insert whose edges, over sharp corners, are `edge` long.
double circle_of_edge(const InsertShape& shape, double edge, double angle) {
  switch (shape.kind) {
    case CuttingKind::kInsertRhombic:
    case CuttingKind::kInsertParallelogram:
      return edge * sine(angle);
    case CuttingKind::kInsertTrigon:
      return 2 * edge / (cotangent(angle / 2) + cotangent(120 - angle / 2));
    case CuttingKind::kInsertRound:
      return edge;
    default:  // the regular ones: a corner of 180 - 360 / n degrees
      return edge * cotangent((180 - shape.angle) / 2);
  }
}

}  // namespace

const InsertShape* insert_shape(std::string_view letter) {
  if (letter.size() != 1) return nullptr;
  const char upper =
      letter[0] >= 'a' && letter[0] <= 'z' ? static_cast<char>(letter[0] - 32) : letter[0];
  const auto* shape = std::ranges::find(kShapes, upper, &InsertShape::letter);
  return shape == kShapes.end() ? nullptr : shape;
}

const InsertShape& insert_shape_of_angle(double angle) {
  const auto* shape = std::ranges::find(kShapes, angle, &InsertShape::angle);
  return shape == kShapes.end() || shape->letter == 'R' ? kShapes.front() : *shape;
}

CutterPlan insert_plan(const InsertShape& shape, InsertSize& size, LengthUnit unit) {
  CutterPlan plan;
  plan.kind = shape.kind;
  const double angle = size.angle > 0 && size.angle < 180 ? size.angle : shape.angle;
  double circle = size.inscribed_circle;
  if (circle <= 0 && size.edge_length > 0) circle = circle_of_edge(shape, size.edge_length, angle);
  if (circle <= 0) {
    circle = length_in(kUsualInscribedCircle, LengthUnit::kMillimetre, unit);
    plan.remarks.push_back("no size is given; inscribed circle taken as " + number_text(circle));
  }
  size.corner_radius = checked_radius(size.corner_radius, circle / 2, plan);
  double thickness = size.thickness;
  if (thickness <= 0) {
    thickness = length_in(kUsualThickness, LengthUnit::kMillimetre, unit);
    plan.remarks.push_back("no thickness is given; taken as " + number_text(thickness));
  }
  plan.dimensions = {{"DIAMETER", circle}, {"FILLET", size.corner_radius}};
  if (angle > 0) plan.dimensions.emplace_back("ANGLE", angle);
  if (size.edge_length > 0) plan.dimensions.emplace_back("LENGTH", size.edge_length);
  plan.dimensions.emplace_back("HEIGHT", thickness);
  plan.top_diameter = circle;
  return plan;
}

}  // namespace tooldb

#include "tooldb/profile/insert_outline.h"

#include <algorithm>
#include <cmath>

#include "tooldb/model/text.h"
#include "tooldb/profile/angles.h"
#include "tooldb/profile/cutter_outlines.h"
#include "tooldb/profile/parameter_ranges.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

enum Shape {
  kRhombic = 17,
  kParallelogram,
  kTriangle,
  kPentagon,
  kHexagon,
  kOctagon,
  kTrigon,
  kRound,
  kCentre
};

/// A kind of insert. `sides` is that of a regular polygon, else 0.
struct ShapeRow {
  int shape;
  int sides;
  double angle_deg;  ///< of the cutting corner when nothing else tells it
  Range angles;
};

constexpr Range kBelow180{0, 180, false, false, "must lie between 0 and 180 degrees"};
constexpr Range kBetween60And180{60, 180, false, false, "must lie between 60 and 180 degrees"};

constexpr auto kShapes = std::to_array<ShapeRow>({
    {kRhombic, 0, 80, kBelow180},
    {kParallelogram, 0, 85, kBelow180},
    {kTriangle, 3, 60, {}},
    {kPentagon, 5, 108, {}},
    {kHexagon, 6, 120, {}},
    {kOctagon, 8, 135, {}},
    {kTrigon, 0, 80, kBetween60And180},
    {kRound, 0, 0, {}},
    {kCentre, 0, 60, kBelow180},
});

/// A shape letter of ISO 1832 with its corner angle.
struct LetterRow {
  char letter;
  int shape;
  double angle_deg;
};

constexpr auto kLetters = std::to_array<LetterRow>({
    {'C', kRhombic, 80},
    {'D', kRhombic, 55},
    {'E', kRhombic, 75},
    {'F', kRhombic, 50},
    {'M', kRhombic, 86},
    {'V', kRhombic, 35},
    {'S', kRhombic, 90},
    {'A', kParallelogram, 85},
    {'B', kParallelogram, 82},
    {'K', kParallelogram, 55},
    {'L', kParallelogram, 90},
    {'T', kTriangle, 60},
    {'P', kPentagon, 108},
    {'H', kHexagon, 120},
    {'O', kOctagon, 135},
    {'W', kTrigon, 80},
    {'R', kRound, 0},
});

constexpr double kUsualCircle = 12.7;
// Long edge of a parallelogram in short edges, when nothing tells it.
constexpr double kUsualStretch = 1.5;

const ShapeRow* shape_row(int shape) {
  const auto row = std::ranges::find(kShapes, shape, &ShapeRow::shape);
  return row == kShapes.end() ? nullptr : &*row;
}

const LetterRow* letter_row(std::string_view text) {
  text = trimmed(text);
  if (text.size() != 1) return nullptr;
  const auto row = std::ranges::find(kLetters, upper(text[0]), &LetterRow::letter);
  return row == kLetters.end() ? nullptr : &*row;
}

bool reads_angle(const ShapeRow& row) { return !row.angles.rule.empty(); }

double cot_deg(double angle) { return cone_height(1, angle); }

// Length of an edge over its sharp corners, per unit of the inscribed circle's diameter.
double edge_per_circle(const ShapeRow& row, double angle) {
  if (row.sides > 0) return tangent(180.0 / row.sides);
  if (row.shape == kTrigon) return (cot_deg(angle / 2) + cot_deg(120 - angle / 2)) / 2;
  if (row.shape == kRhombic) return 1 / sin_degrees(angle);
  if (row.shape == kParallelogram) return kUsualStretch / sin_degrees(angle);
  return 1;
}

// The corner at `distance` from the centre and `angle` degrees.
SharpCorner polar(double distance, double angle, double radius) {
  return {{distance * cos_degrees(angle), distance * sin_degrees(angle)}, radius};
}

// The sharp corners of an insert with an inscribed circle, about its centre.
std::vector<SharpCorner> corners_about_centre(const ShapeRow& row, const tdbInsertGeometry& g) {
  const double half = g.includedAngle / 2;
  const double rho = g.inscribedCircle / 2;
  std::vector<SharpCorner> corners;
  if (row.sides > 0) {
    for (int i = 0; i < row.sides; ++i) {
      corners.push_back(
          polar(rho / cos_degrees(180.0 / row.sides), -90 + 360.0 * i / row.sides, g.cornerRadius));
    }
    return corners;
  }
  const int count = row.shape == kTrigon ? 6 : 4;
  const double even = rho / sin_degrees(half);
  const double odd = row.shape == kTrigon ? rho / sin_degrees(120 - half) : rho / cos_degrees(half);
  for (int i = 0; i < count; ++i) {
    corners.push_back(polar(i % 2 == 0 ? even : odd, -90 + 360.0 * i / count, g.cornerRadius));
  }
  return corners;
}

std::vector<SharpCorner> parallelogram_corners(const tdbInsertGeometry& g) {
  const double half = g.includedAngle / 2;
  const double l = g.edgeLength;
  const double s = g.inscribedCircle / sin_degrees(g.includedAngle);
  const Vec2 right{sin_degrees(half), cos_degrees(half)};
  const Vec2 left{-right.x, right.y};
  return {{{0, 0}, g.cornerRadius},
          {l * right, g.cornerRadius},
          {l * right + s * left, g.cornerRadius},
          {s * left, g.cornerRadius}};
}

// The corners, moved so that the nose circle of the first one touches (0, 0) from above.
void move_nose_to_origin(std::vector<SharpCorner>& corners, const tdbInsertGeometry& g) {
  const double sharp = g.cornerRadius - g.cornerRadius / sin_degrees(g.includedAngle / 2);
  const Vec2 shift = Vec2{0, sharp} - corners.front().point;
  for (SharpCorner& corner : corners) corner.point = corner.point + shift;
}

std::vector<ContourSegment> round_insert(double r) {
  const Vec2 centre{0, r};
  const auto ccw = SegmentKind::kCcw;
  return {{{0, 0}, {r, r}, centre, ccw},
          {{r, r}, {0, 2 * r}, centre, ccw},
          {{0, 2 * r}, {-r, r}, centre, ccw},
          {{-r, r}, {0, 0}, centre, ccw}};
}

Outline refused(std::string_view parameter, std::string_view reason) {
  Outline outline;
  outline.refusal.append(parameter).append(" ").append(reason);
  return outline;
}

Outline outline_of(std::optional<std::vector<ContourSegment>> segments) {
  if (!segments) return refused("FILLET", "does not fit between its neighbours");
  return {*std::move(segments), {}, {}};
}

Outline centre_outline(const tdbInsertGeometry& g) {
  const double r = g.inscribedCircle / 2;
  const double point = cone_height(r, g.includedAngle / 2);
  if (!at_most(point, g.edgeLength))
    return refused("LENGTH", "is less than the length of the point");
  const double top = std::max(point, g.edgeLength);
  const SharpCorner corners[] = {{{0, 0}}, {{r, point}}, {{r, top}}, {{0, top}}};
  return outline_of(round_corners(corners));
}

bool is_angle_refused(const ShapeRow& row, double angle) {
  return reads_angle(row) && !(angle > row.angles.low && angle < row.angles.high);
}

// The text of a parameter of an insert as a number: 0 when it is not set.
double number_or_none(const Draft& draft, std::string_view name) {
  return draft.IsSet(name) ? draft[name] : 0;
}

double default_angle(const tdbItem& cutter, int shape) {
  const LetterRow* letter = letter_row(cutter.GetParam("INSERT_SHAPE", ""));
  return letter != nullptr && letter->shape == shape ? letter->angle_deg : 0;
}

}  // namespace

int insert_shape(const tdbItem& cutter) {
  const auto* tool = dynamic_cast<const tdbCuttingTool*>(cutter.GetParent());
  if (tool != nullptr && shape_row(tool->GetType()) != nullptr) return tool->GetType();
  const std::string_view letter = trimmed(cutter.GetParam("INSERT_SHAPE", ""));
  if (letter.empty()) return kRhombic;
  const LetterRow* row = letter_row(letter);
  return row == nullptr ? 0 : row->shape;
}

tdbInsertGeometry complete_insert(tdbInsertGeometry g) {
  const ShapeRow* row = shape_row(g.shape);
  if (row == nullptr) return g;
  if (!reads_angle(*row) || g.includedAngle == 0) g.includedAngle = row->angle_deg;
  const bool given = g.shape != kCentre && g.edgeLength > 0;
  const double per_circle = edge_per_circle(*row, g.includedAngle);
  if (g.inscribedCircle == 0) g.inscribedCircle = given ? g.edgeLength / per_circle : kUsualCircle;
  if (g.shape == kCentre && g.edgeLength == 0) {
    const double r = g.inscribedCircle / 2;
    g.edgeLength = cone_height(r, g.includedAngle / 2) + g.inscribedCircle;
  } else if (g.shape != kCentre && (g.shape != kParallelogram || !given)) {
    g.edgeLength = g.inscribedCircle * per_circle;
  }
  return g;
}

Outline insert_outline(const tdbInsertGeometry& insert) {
  const ShapeRow* row = shape_row(insert.shape);
  if (row == nullptr) return refused("INSERT_SHAPE", "is not a known letter");
  for (const double number : {insert.inscribedCircle, insert.cornerRadius, insert.edgeLength}) {
    if (!(number >= 0 && number <= kLargestParameter)) {
      return refused("DIAMETER, FILLET or LENGTH", "is negative or no number");
    }
  }
  tdbInsertGeometry g = complete_insert(insert);
  if (is_angle_refused(*row, g.includedAngle)) return refused("ANGLE", row->angles.rule);
  if (g.shape == kCentre) return centre_outline(g);
  const double r = g.inscribedCircle / 2;
  if (g.shape == kRound) return {round_insert(r), {}, {}};
  if (!at_most(g.cornerRadius, r)) return refused("FILLET", "is larger than half of DIAMETER");
  g.cornerRadius = std::min(g.cornerRadius, r);
  if (g.shape == kParallelogram &&
      !at_most(g.inscribedCircle / sin_degrees(g.includedAngle), g.edgeLength)) {
    return refused("LENGTH", "is less than the short edge");
  }
  auto corners =
      g.shape == kParallelogram ? parallelogram_corners(g) : corners_about_centre(*row, g);
  move_nose_to_origin(corners, g);
  return outline_of(round_closed_corners(corners));
}

void draw_insert(Draft& draft) {
  tdbInsertGeometry g;
  g.shape = insert_shape(draft.Item());
  g.inscribedCircle = number_or_none(draft, "DIAMETER");
  g.edgeLength = number_or_none(draft, "LENGTH");
  g.includedAngle = number_or_none(draft, "ANGLE");
  g.cornerRadius = draft["FILLET"];
  g.thickness = draft["HEIGHT"];
  const ShapeRow* row = shape_row(g.shape);
  if (row != nullptr && reads_angle(*row) && draft.IsSet("ANGLE")) {
    if (!(g.includedAngle > 0)) draft.Refuse("ANGLE", row->angles.rule);
  } else {
    g.includedAngle = default_angle(draft.Item(), g.shape);
  }
  Outline outline = insert_outline(g);
  if (!outline.Stands()) draft.Refuse("", outline.refusal);
  g = complete_insert(g);
  draft.Resolve("DIAMETER", g.inscribedCircle);
  draft.Resolve("ANGLE", g.includedAngle);
  draft.Resolve("LENGTH", g.edgeLength);
  draft.Segments(std::move(outline.segments));
}

}  // namespace tooldb

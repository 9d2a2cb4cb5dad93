#include "tooldb/profile/cutter_outlines.h"

#include <cmath>
#include <numbers>

#include "tooldb/profile/angles.h"
#include "tooldb/profile/draft.h"

namespace tooldb {
namespace {

constexpr auto kCcw = SegmentKind::kCcw;
constexpr auto kCw = SegmentKind::kCw;

constexpr std::string_view kWider = "is larger than DIAMETER";
constexpr std::string_view kTooLong = "is too small for the parts below";

/// The radius of a second diameter that must not exceed the cutting diameter `r`.
double inner_radius(Draft& draft, std::string_view name, double r) {
  return draft.AtMost(draft.Half(name), r, name, kWider);
}

/// Where the corner of a tip cone and a side lies, and how its arc touches both.
struct TipCorner {
  double height;     // of the sharp corner
  double tip_deg;    // cone against the tip plane
  double taper_deg;  // side against the axis
  double radius;

  double CentreHeight() const {
    const double t = radius * tangent((90 - taper_deg - tip_deg) / 2);
    return height - t * sin_degrees(tip_deg) + radius * cos_degrees(tip_deg);
  }
};

/// Moves the outline so that the programmed point is at y = 0: the tip, the centre of the tip
/// corner, or the top of the head.
void shift_to_programmed_point(Draft& draft, const TipCorner& corner, double top) {
  const double choice = draft["STANDARD_TCPTYPE"];
  if (choice == 1) draft.Shift(-corner.CentreHeight());
  if (choice == 2) draft.Shift(-top);
}

}  // namespace

void draw_flat(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double h = draft["HEIGHT"];
  draft.Corners({{{0, 0}}, {{r, 0}}, {{r, h}}, {{0, h}}});
  draft.Cuts(0, h);
}

void draw_ball(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  draft.Arc({r, r}, {0, r}, kCcw);
  draft.Arc({0, 2 * r}, {0, r}, kCcw);
  if (draft["SPHERIC_TCPTYPE"] == 1) draft.Shift(-r);
}

void draw_ball_nose(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double h = draft["HEIGHT"];
  double f = draft.Derived("FILLET", r);
  f = draft.AtMost(f, r, "FILLET", "is larger than half of DIAMETER");
  f = draft.AtMost(f, h, "FILLET", "is larger than HEIGHT");
  draft.Corners({{{0, 0}}, {{r, 0}, f}, {{r, h}}, {{0, h}}});
  draft.Cuts(0, h);
  if (draft["SPHERIC_TCPTYPE"] == 1) draft.Shift(-f);
}

void draw_standard(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double h = draft["HEIGHT"];
  const double taper = draft["ANGLE"];
  const double tip = draft["ANGLE1"];
  const TipCorner corner{r * tangent(tip), tip, taper, draft["FILLET"]};
  if (!(taper + tip < 90)) draft.Refuse("ANGLE", "and ANGLE1 make 90 degrees or more");
  draft.Positive(h - corner.height, "HEIGHT", "is not above the tip cone");
  const double inside = -(r + (h - corner.height) * tangent(taper));
  const double top = -draft.AtMost(inside, 0, "ANGLE", "narrows the tool beyond its axis");
  draft.Corners({{{0, 0}}, {{r, corner.height}, corner.radius}, {{top, h}}, {{0, h}}});
  draft.Cuts(0, h);
  shift_to_programmed_point(draft, corner, h);
}

void draw_drill(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double h = draft["HEIGHT"];
  const double point = draft.AtMost(cone_height(r, draft["ANGLE"] / 2), h, "HEIGHT",
                                    "is less than the length of the point");
  draft.Corners({{{0, 0}}, {{r, point}}, {{r, h}}, {{0, h}}});
  draft.Cuts(0, h);
}

void draw_chamfer(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r1 = inner_radius(draft, "DIAMETER1", r);
  const double h = draft["HEIGHT"];
  const double edge = draft.AtMost(cone_height(r - r1, draft["ANGLE"]), h, "HEIGHT", kTooLong);
  draft.Corners({{{0, 0}}, {{r1, 0}}, {{r, edge}}, {{r, h}}, {{0, h}}});
  draft.Cuts(0, edge);
}

void draw_double_chamfer(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r1 = inner_radius(draft, "DIAMETER1", r);
  const double r2 = inner_radius(draft, "DIAMETER2", r);
  const double h = draft["HEIGHT"];
  const double front = cone_height(r - r1, draft["ANGLE1"]);
  const double land = front + draft["HEIGHT1"];
  const double back =
      draft.AtMost(land + cone_height(r - r2, draft["ANGLE2"]), h, "HEIGHT", kTooLong);
  draft.Corners(
      {{{0, 0}}, {{r1, 0}}, {{r, front}}, {{r, land}}, {{r2, back}}, {{r2, h}}, {{0, h}}});
  draft.Cuts(0, back);
}

void draw_boring_bar(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r1 = inner_radius(draft, "DIAMETER1", r);
  const double h = draft["HEIGHT"];
  const double h1 = draft["HEIGHT1"];
  const double back = draft.AtMost(h1 + (r - r1) * tangent(draft["ANGLE"]), h, "HEIGHT", kTooLong);
  draft.Corners(
      {{{0, 0}}, {{r, 0}, draft["FILLET"]}, {{r, h1}}, {{r1, back}}, {{r1, h}}, {{0, h}}});
  draft.Cuts(0, h1);
}

void draw_corner_rounding(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r1 = draft.Half("DIAMETER1");
  const double h = draft["HEIGHT"];
  const double h1 = draft["HEIGHT1"];
  double f = draft.AtMost(draft["FILLET"], r - r1, "FILLET", "and DIAMETER1 exceed DIAMETER");
  f = draft.AtMost(f, h - h1, "FILLET", "and HEIGHT1 exceed HEIGHT");
  draft.Line({r1, 0});
  draft.Line({r1, h1});
  draft.Arc({r1 + f, h1 + f}, {r1 + f, h1}, kCw);
  draft.Line({r, h1 + f});
  draft.Line({r, h});
  draft.Line({0, h});
  draft.Cuts(0, h1 + f);
}

void draw_tap(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r1 = inner_radius(draft, "DIAMETER1", r);
  const double h = draft["HEIGHT"];
  const double h1 = draft.AtMost(draft["HEIGHT1"], h, "HEIGHT1", "is larger than HEIGHT");
  draft.Corners({{{0, 0}}, {{r1, 0}}, {{r, h1}}, {{r, h}}, {{0, h}}});
  draft.Cuts(0, h);
}

void draw_disc(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double h = draft["HEIGHT"];
  double f = draft.AtMost(draft["FILLET"], r, "FILLET", "is larger than half of DIAMETER");
  f = draft.AtMost(f, h / 2, "FILLET", "is larger than half of HEIGHT");
  draft.Corners({{{0, 0}}, {{r, 0}, f}, {{r, h}, f}, {{0, h}}});
  draft.Cuts(0, h);
}

void draw_round_rim(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double h = draft["HEIGHT"];
  double f = draft.AtMost(draft["FILLET"], r, "FILLET", "is larger than half of DIAMETER");
  f = draft.AtMost(f, h / 2, "FILLET", "is larger than half of HEIGHT");
  const double neck = r - f;
  if (is_zero(neck) && !is_zero(h - 2 * f)) {
    draft.Refuse("FILLET", "of half of DIAMETER needs a HEIGHT of DIAMETER");
  }
  draft.Line({neck, 0});
  draft.Arc({r, f}, {neck, f}, kCcw);
  draft.Arc({neck, 2 * f}, {neck, f}, kCcw);
  draft.Line({neck, h});
  draft.Line({0, h});
  draft.Cuts(0, 2 * f);
}

void draw_rim_circle(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r1 = draft.Half("DIAMETER1");
  const double half = draft.AtMost(draft.Half("HEIGHT"), r1, "HEIGHT", "is larger than DIAMETER1");
  const double inside = -(r - r1 + std::sqrt(std::max(0.0, r1 * r1 - half * half)));
  const double x = -draft.AtMost(inside, 0, "DIAMETER1", "puts the rim beyond the axis");
  draft.Line({x, 0});
  draft.Arc({r, half}, {r - r1, half}, kCcw);
  draft.Arc({x, 2 * half}, {r - r1, half}, kCcw);
  draft.Line({0, 2 * half});
  draft.Cuts(0, 2 * half);
}

void draw_disc_drill(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r1 = inner_radius(draft, "DIAMETER1", r);
  const double h1 = draft["HEIGHT1"];
  const double top = h1 + draft["HEIGHT"];
  const double point = draft.AtMost(cone_height(r1, draft["ANGLE"] / 2), h1, "HEIGHT1",
                                    "is less than the length of the point");
  draft.Corners({{{0, 0}}, {{r1, point}}, {{r1, h1}}, {{r, h1}}, {{r, top}}, {{0, top}}});
  draft.Cuts(0, top);
}

void draw_flanged_disc(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r1 = inner_radius(draft, "DIAMETER1", r);
  const double r2 = inner_radius(draft, "DIAMETER2", r);
  const double f = draft["FILLET"];
  const bool lower = r1 > 0 && draft["HEIGHT1"] > 0;
  const bool upper = r2 > 0 && draft["HEIGHT2"] > 0;
  if (f > 0 && ((lower && r1 >= r) || (upper && r2 >= r))) {
    draft.Refuse("FILLET", "needs flanges that are smaller than DIAMETER");
  }
  const double y = lower ? draft["HEIGHT1"] : 0;
  const double rim = y + draft["HEIGHT"];
  const double top = upper ? rim + draft["HEIGHT2"] : rim;
  std::vector<SharpCorner> corners{{{0, 0}}};
  if (lower) corners.insert(corners.end(), {{{r1, 0}}, {{r1, y}}});
  corners.insert(corners.end(), {{{r, y}, f}, {{r, rim}, f}});
  if (upper) corners.insert(corners.end(), {{{r2, rim}}, {{r2, top}}});
  corners.push_back({{0, top}});
  draft.Corners(corners);
  draft.Cuts(y, rim);
}

void draw_head_and_hub(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r3 = inner_radius(draft, "DIAMETER3", r);
  const double h1 = draft["HEIGHT1"];
  const double f2 = draft["FILLET2"];
  const double f3 = draft["FILLET3"];
  const double tip = draft["ANGLE1"];
  const TipCorner corner{r * tangent(tip), tip, 0, draft["FILLET"]};
  draft.Positive(h1 - corner.height, "HEIGHT1", "is not above the tip cone");
  const bool hub = r3 > 0 && draft["HEIGHT3"] > 0;
  const bool straight = hub && r3 >= r;
  if (straight && (f2 > 0 || f3 > 0)) {
    draft.Refuse("FILLET2", "and FILLET3 need a hub that is smaller than DIAMETER");
  }
  const double top = hub ? h1 + draft["HEIGHT3"] : h1;
  std::vector<SharpCorner> corners{{{0, 0}}, {{r, corner.height}, corner.radius}};
  if (!straight) corners.push_back({{r, h1}, f2});
  if (hub && !straight) corners.push_back({{r3, h1}, f3});
  if (hub) corners.push_back({{r3, top}});
  corners.push_back({{0, top}});
  draft.Corners(corners);
  draft.Cuts(0, h1);
  shift_to_programmed_point(draft, corner, h1);
}

}  // namespace tooldb

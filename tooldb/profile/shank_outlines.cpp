#include "tooldb/profile/shank_outlines.h"

#include <cmath>

#include "tooldb/profile/angles.h"
#include "tooldb/profile/draft.h"

namespace tooldb {

void draw_stepped(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r2 = draft.Half("DIAMETER2");
  const double r3 = draft.Half("DIAMETER3");
  double y = draft["HEIGHT"];
  const double tapered = r + y * tangent(draft["ANGLE2"]);
  draft.Positive(tapered, "ANGLE2", "narrows the shank to its axis");
  std::vector<SharpCorner> corners{{{0, 0}}, {{r, 0}}, {{tapered, y}}};
  if (r2 > 0 && draft["HEIGHT2"] > 0) {
    y += std::abs(r2 - tapered) * tangent(draft["ANGLE"]);
    corners.push_back({{r2, y}});
    y += draft["HEIGHT2"];
    corners.push_back({{r2, y}});
  }
  if (r3 > 0 && draft["HEIGHT3"] > 0) {
    corners.push_back({{r3, y}});
    y += draft["HEIGHT3"];
    corners.push_back({{r3, y}});
  }
  draft.Positive(y, "HEIGHT", "and the other heights leave the shank no length");
  corners.push_back({{0, y}});
  draft.Corners(corners);
}

void draw_cone(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double r2 = draft.Half("DIAMETER2");
  const double h = draft["HEIGHT"];
  const double top = h + draft["HEIGHT2"];
  draft.Positive(r + r2, "DIAMETER", "and DIAMETER2 are both 0");
  if (r2 == 0 && top > h) draft.Refuse("HEIGHT2", "needs a DIAMETER2");
  draft.Corners({{{0, 0}}, {{r, 0}}, {{r2, h}}, {{r2, top}}, {{0, top}}});
}

void draw_neck_and_body(Draft& draft) {
  const double r1 = draft.Half("DIAMETER1");
  const double r2 = draft.Half("DIAMETER2");
  const double angle = draft["ANGLE2"];
  const double hub = draft["DIAMETER3"] > 0 ? draft["HEIGHT3"] : 0;
  const double top = draft["HEIGHT"] - draft["HEIGHT1"] - hub;
  draft.Positive(top, "HEIGHT", "is not above the head and the hub");
  if (r1 != r2 && !(angle > 0 && angle <= 90)) {
    draft.Refuse("ANGLE2", "must be above 0 and at most 90 degrees");
  }
  const double cone = r1 == r2 ? 0 : cone_height(std::abs(r2 - r1), angle);
  const double body = draft.AtMost(draft["HEIGHT2"] + cone, top, "HEIGHT2",
                                   "and the cone below it are longer than the shank");
  const double shoulder = top - draft["HEIGHT2"];
  draft.Corners(
      {{{0, 0}}, {{r1, 0}}, {{r1, top - body}}, {{r2, shoulder}}, {{r2, top}}, {{0, top}}});
}

void draw_cylinder(Draft& draft) {
  const double r = draft.Half("DIAMETER");
  const double h = draft["HEIGHT"];
  draft.Corners({{{0, 0}}, {{r, 0}}, {{r, h}}, {{0, h}}});
}

}  // namespace tooldb

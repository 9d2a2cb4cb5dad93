#include "filters/cutter_plan.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "filters/outline_text.h"
#include "filters/quantity.h"

namespace tooldb {
namespace {

constexpr double kDefaultPointAngle = 118;
/// Stands for a tip that is a point where an outline needs a width: just more than what counts as
/// none.
constexpr double kSmallestDiameter = 4e-6;

double tan_deg(double angle) { return std::tan(angle * std::numbers::pi / 180); }

/// Height of a cone that widens by `width` at `angle` from the axis.
double cone_height(double width, double angle) { return angle >= 90 ? 0 : width / tan_deg(angle); }

/// The cutting length, at least `least` high.
double checked_height(const CutterSize& size, double least, CutterPlan& plan) {
  double height = size.cutting_length;
  if (height <= 0) {
    height = std::max(size.diameter, least);
    plan.remarks.push_back("no cutting length is given; taken as " + number_text(height));
  } else if (height < least * (1 - 1e-9)) {
    plan.remarks.push_back("cutting length " + number_text(height) + " raised to " +
                           number_text(least) + ", the height of the tip");
    height = least;
  }
  return height;
}

/// An angle inside 0..90, else `otherwise`.
double checked_angle(double angle, double otherwise, CutterPlan& plan) {
  if (angle > 0 && angle <= 90) return angle;
  plan.remarks.push_back((angle == 0 ? "no angle is given" : "angle " + number_text(angle)) +
                         "; taken as " + number_text(otherwise) + " from the axis");
  return otherwise;
}

double checked_tip(const CutterSize& size, CutterPlan& plan) {
  if (size.tip_diameter <= size.diameter) return size.tip_diameter;
  plan.remarks.push_back("tip diameter " + number_text(size.tip_diameter) +
                         " is above the diameter; left out");
  return 0;
}

void set_top(CutterPlan& plan, double height, double diameter) {
  plan.top = height;
  plan.top_diameter = diameter;
}

CutterPlan semispheric(const CutterSize& size, double radius, CutterPlan plan) {
  plan.kind = CuttingKind::kBullNose;
  const double height = checked_height(size, radius, plan);
  plan.dimensions = {
      {"DIAMETER", size.diameter}, {"HEIGHT", height}, {"FILLET", radius}, {"SPHERIC_TCPTYPE", 0}};
  set_top(plan, height, size.diameter);
  return plan;
}

CutterPlan chamfer(const CutterSize& size, double angle, double height, CutterPlan plan) {
  plan.kind = CuttingKind::kChamfer1;
  plan.dimensions = {{"DIAMETER", size.diameter},
                     {"DIAMETER1", size.tip_diameter},
                     {"HEIGHT", height},
                     {"ANGLE", angle}};
  set_top(plan, height, size.diameter);
  return plan;
}

/// A flank at `angle` from a tip of which `corner` is the corner of tip plane and flank.
CutterPlan tapered(const CutterSize& size, double corner_diameter, double radius, CutterPlan plan) {
  plan.kind = CuttingKind::kStandard;
  double height = checked_height(size, radius, plan);
  double top = corner_diameter + 2 * height * tan_deg(size.side_angle);
  if (size.largest_diameter > corner_diameter && size.side_angle > 0 &&
      top > size.largest_diameter) {
    height = (size.largest_diameter - corner_diameter) / 2 / tan_deg(size.side_angle);
    top = size.largest_diameter;
  }
  plan.dimensions = {{"DIAMETER", corner_diameter},
                     {"HEIGHT", height},
                     {"ANGLE", size.side_angle},
                     {"ANGLE1", 0},
                     {"FILLET", radius},
                     {"STANDARD_TCPTYPE", 0}};
  set_top(plan, height, top);
  return plan;
}

CutterPlan drill(const CutterSize& size, double angle, CutterPlan plan) {
  plan.kind = CuttingKind::kDrill;
  const double height = checked_height(size, cone_height(size.diameter / 2, angle / 2), plan);
  plan.dimensions = {{"DIAMETER", size.diameter}, {"HEIGHT", height}, {"ANGLE", angle}};
  set_top(plan, height, size.diameter);
  return plan;
}

/// A cutter of a kind without named dimensions.
CutterPlan outlined(const std::string& outline, OutlinePoint top, CutterPlan plan) {
  plan.kind = CuttingKind::kProfile2d;
  plan.outline = outline;
  set_top(plan, top.y, 2 * top.x);
  return plan;
}

/// Of a 60 degree thread, from the plane across the axis.
constexpr double kThreadFlankAngle = 30;
constexpr int kMostThreadRows = 500;

int thread_rows(const CutterSize& size) {
  const double rows = size.rows > 0 ? size.rows : std::round(size.cutting_length / size.pitch);
  return static_cast<int>(std::clamp(rows, 1.0, double{kMostThreadRows}));
}

}  // namespace

double checked_radius(double radius, double most, CutterPlan& plan) {
  if (radius <= most * (1 + 1e-9)) return std::min(radius, most);
  plan.remarks.push_back("corner radius " + number_text(radius) + " cut to " + number_text(most));
  return most;
}

CutterPlan plain_cutter(const CutterSize& size) {
  CutterPlan plan;
  const double height = checked_height(size, 0, plan);
  plan.dimensions = {{"DIAMETER", size.diameter}, {"HEIGHT", height}};
  set_top(plan, height, size.diameter);
  return plan;
}

CutterPlan bull_nose_cutter(const CutterSize& size) {
  if (size.corner_radius <= 0) return plain_cutter(size);
  CutterPlan plan;
  const double radius = checked_radius(size.corner_radius, size.diameter / 2, plan);
  return semispheric(size, radius, std::move(plan));
}

CutterPlan pointed_cutter(const CutterSize& size) {
  CutterPlan plan;
  CutterSize checked = size;
  checked.tip_diameter = checked_tip(size, plan);
  const double angle = checked_angle(size.side_angle, 45, plan);
  const double cone = cone_height((size.diameter - checked.tip_diameter) / 2, angle);
  const double height = checked_height(size, cone, plan);
  return chamfer(checked, angle, height, std::move(plan));
}

CutterPlan chamfer_cutter(const CutterSize& size) {
  CutterPlan plan;
  CutterSize checked = size;
  checked.tip_diameter = checked_tip(size, plan);
  const double angle = checked_angle(size.side_angle, 45, plan);
  const double height = checked_height(size, 0, plan);
  const double reached = checked.tip_diameter + 2 * height * tan_deg(angle);
  if (angle < 90 && reached < size.diameter * (1 - 1e-9)) {
    plan.remarks.push_back("the cutting length ends the cone at diameter " + number_text(reached) +
                           "; " + number_text(size.diameter) + " is not reached");
    checked.diameter = reached;
  }
  return chamfer(checked, angle, height, std::move(plan));
}

CutterPlan face_cutter(const CutterSize& size) {
  if (size.side_angle <= 0 || size.side_angle > 90) return bull_nose_cutter(size);
  CutterPlan plan;
  plan.kind = CuttingKind::kChamfer2;
  const double height = checked_height(size, 0, plan);
  const double outer =
      size.largest_diameter > size.diameter
          ? size.largest_diameter
          : size.diameter + (size.side_angle < 90 ? 2 * height * tan_deg(size.side_angle) : 0);
  const double cone = cone_height((outer - size.diameter) / 2, size.side_angle);
  plan.dimensions = {{"DIAMETER", outer},  {"DIAMETER1", size.diameter},
                     {"DIAMETER2", outer}, {"HEIGHT", std::max(height, cone)},
                     {"HEIGHT1", 0},       {"ANGLE1", size.side_angle},
                     {"ANGLE2", 90}};
  set_top(plan, std::max(height, cone), outer);
  return plan;
}

CutterPlan corner_rounding_cutter(const CutterSize& size) {
  CutterPlan plan;
  if (size.corner_radius <= 0) {
    plan = plain_cutter(size);
    plan.remarks.push_back("no radius is given; drawn as a plain cylinder");
    return plan;
  }
  plan.kind = CuttingKind::kCornerRounding;
  const double tip = std::max(size.tip_diameter, kSmallestDiameter);
  const double height = checked_height(size, size.corner_radius, plan);
  const double outer = std::max(size.largest_diameter, size.tip_diameter + 2 * size.corner_radius);
  plan.dimensions = {{"DIAMETER", outer},
                     {"DIAMETER1", tip},
                     {"HEIGHT", height},
                     {"HEIGHT1", 0},
                     {"FILLET", size.corner_radius}};
  set_top(plan, height, outer);
  return plan;
}

CutterPlan disc_cutter(const CutterSize& size) {
  CutterPlan plan;
  plan.kind = CuttingKind::kDisc;
  const double height = checked_height(size, 0, plan);
  const double radius =
      checked_radius(size.corner_radius, std::min(height, size.diameter) / 2, plan);
  plan.dimensions = {{"DIAMETER", size.diameter}, {"HEIGHT", height}, {"FILLET", radius}};
  set_top(plan, height, size.diameter);
  return plan;
}

CutterPlan lollipop_cutter(const CutterSize& size) {
  CutterPlan plan;
  plan.kind = CuttingKind::kLollipop;
  plan.dimensions = {{"DIAMETER", size.diameter}, {"SPHERIC_TCPTYPE", 0}};
  const double radius = size.diameter / 2;
  const double neck = std::min(radius, size.neck_diameter / 2);
  // The neck enters the ball where the ball is as wide as the neck.
  set_top(plan, radius + std::sqrt(radius * radius - neck * neck), 2 * neck);
  return plan;
}

CutterPlan probe_cutter(const CutterSize& size) {
  CutterPlan plan = lollipop_cutter(size);
  plan.kind = CuttingKind::kProbe;
  return plan;
}

CutterPlan tapered_cutter(const CutterSize& size) {
  CutterPlan plan;
  if (size.side_angle >= 90) {
    plan = plain_cutter(size);
    plan.remarks.push_back("a taper of " + number_text(size.side_angle) +
                           " degrees is none; drawn as a plain cylinder");
    return plan;
  }
  const double tangent = size.corner_radius * tan_deg((90 - size.side_angle) / 2);
  if (tangent <= size.diameter / 2) {
    return tapered(size, size.diameter, size.corner_radius, std::move(plan));
  }
  plan.remarks.push_back("the tip is narrower than its radius " + number_text(size.corner_radius) +
                         "; drawn with a ball of that radius");
  return tapered(size, 2 * tangent, size.corner_radius, std::move(plan));
}

CutterPlan tapered_ball_cutter(const CutterSize& size) {
  if (size.side_angle >= 90) return tapered_cutter(size);
  const double radius = size.diameter / 2;
  return tapered(size, 2 * radius * tan_deg((90 - size.side_angle) / 2), radius, {});
}

CutterPlan drill_cutter(const CutterSize& size) {
  CutterPlan plan;
  double angle = size.point_angle;
  if (angle <= 0 || angle > 180) {
    angle = kDefaultPointAngle;
    plan.remarks.push_back("no usable point angle is given; taken as " + number_text(angle));
  }
  return drill(size, angle, std::move(plan));
}

CutterPlan reamer_cutter(const CutterSize& size) {
  return drill(size, size.point_angle > 0 && size.point_angle < 180 ? size.point_angle : 180, {});
}

CutterPlan tap_cutter(const CutterSize& size) {
  CutterPlan plan;
  plan.kind = CuttingKind::kTap;
  const double height = checked_height(size, 0, plan);
  double lead = size.lead_length;
  double end = size.tip_diameter;
  if (lead <= 0 && size.point_angle > 0 && size.point_angle < 180) {
    lead = cone_height((size.diameter - end) / 2, size.point_angle / 2);
  } else if (lead <= 0) {
    // Core diameter of an ISO metric external thread: d - 1.2269 P; the lead of a plug tap.
    const double pitch = size.pitch > 0 ? size.pitch : size.diameter / 8;
    end = std::max(0.0, size.diameter - 1.2269 * pitch);
    lead = 2 * pitch;
    plan.remarks.push_back("no lead is given; taken as two pitches long");
  }
  end = std::min(end, size.diameter);
  plan.dimensions = {{"DIAMETER", size.diameter},
                     {"DIAMETER1", end},
                     {"HEIGHT", height},
                     {"HEIGHT1", std::min(lead, height)}};
  if (size.pitch > 0) plan.dimensions.emplace_back("PITCH", size.pitch);
  set_top(plan, height, size.diameter);
  return plan;
}

CutterPlan boring_bar_cutter(const CutterSize& size) {
  CutterPlan plan;
  plan.kind = CuttingKind::kBore;
  const double head = checked_height(size, 0, plan);
  const double bar =
      size.neck_diameter > 0 ? std::min(size.neck_diameter, size.diameter) : size.diameter;
  const double height = std::max(head, size.neck_end);
  const double radius = checked_radius(size.corner_radius, std::min(head, size.diameter / 2), plan);
  plan.dimensions = {{"DIAMETER", size.diameter}, {"DIAMETER1", bar}, {"HEIGHT", height},
                     {"HEIGHT1", head},           {"ANGLE", 0},       {"FILLET", radius}};
  set_top(plan, height, bar);
  return plan;
}

CutterPlan dovetail_cutter(const CutterSize& size) {
  CutterPlan plan;
  const double radius = size.diameter / 2;
  const double height = checked_height(size, 0, plan);
  const double crest = std::min(size.crest, height);
  const double angle =
      size.side_angle > 0 && size.side_angle < 90 ? size.side_angle : checked_angle(0, 30, plan);
  double top = radius - (height - crest) * tan_deg(angle);
  if (top < radius / 20) {
    plan.remarks.push_back("the flank would meet the axis below the cutting length; drawn steeper");
    top = radius / 20;
  }
  const OutlinePoint points[] = {{0, 0}, {radius, 0}, {radius, crest}, {top, height}, {0, height}};
  return outlined(straight_outline(points), {top, height}, std::move(plan));
}

CutterPlan thread_mill_cutter(const CutterSize& size) {
  if (size.pitch <= 0) {
    CutterPlan plan = disc_cutter(size);
    plan.remarks.push_back("no pitch is given; drawn as a disc");
    return plan;
  }
  CutterPlan plan;
  const double radius = size.diameter / 2;
  const double crest = size.crest > 0 ? std::min(size.crest, size.pitch) : size.pitch / 8;
  const double flank =
      size.side_angle > 0 && size.side_angle < 90 ? size.side_angle : kThreadFlankAngle;
  const double depth = std::min((size.pitch - crest) / 2 / tan_deg(flank), radius * 0.9);
  OutlineText outline({0, 0});
  outline.LineTo({radius - depth, 0});
  for (int row = 0; row < thread_rows(size); ++row) {
    const double middle = (row + 0.5) * size.pitch;
    outline.LineTo({radius, middle - crest / 2});
    outline.LineTo({radius, middle + crest / 2});
    outline.LineTo({radius - depth, (row + 1) * size.pitch});
  }
  const OutlinePoint top = outline.At();
  outline.LineTo({0, top.y});
  return outlined(outline.Text(), top, std::move(plan));
}

CutterPlan barrel_cutter(const CutterSize& size) {
  const double radius = size.diameter / 2;
  const double half = size.cutting_length / 2;
  if (size.profile_radius <= half || half <= 0) {
    CutterPlan plan = plain_cutter(size);
    plan.remarks.push_back("no usable profile radius is given; drawn as a plain cylinder");
    return plan;
  }
  CutterPlan plan;
  plan.remarks.push_back("drawn as one arc, widest at half the cutting length");
  const double center = radius - size.profile_radius;
  const double reach = std::sqrt(size.profile_radius * size.profile_radius - half * half) + center;
  if (reach < 0) {
    plan = plain_cutter(size);
    plan.remarks.push_back("the profile radius would cross the axis; drawn as a plain cylinder");
    return plan;
  }
  OutlineText outline({0, 0});
  outline.LineTo({reach, 0});
  outline.ArcTo({radius, half}, {center, half}, true);
  outline.ArcTo({reach, 2 * half}, {center, half}, true);
  outline.LineTo({0, 2 * half});
  return outlined(outline.Text(), {reach, 2 * half}, std::move(plan));
}

CutterPlan lens_cutter(const CutterSize& size) {
  const double radius = size.diameter / 2;
  if (size.profile_radius < radius) {
    CutterPlan plan = plain_cutter(size);
    plan.remarks.push_back("no usable profile radius is given; drawn as a plain cylinder");
    return plan;
  }
  CutterPlan plan;
  const double rise =
      size.profile_radius - std::sqrt(size.profile_radius * size.profile_radius - radius * radius);
  const double height = checked_height(size, rise, plan);
  OutlineText outline({0, 0});
  outline.ArcTo({radius, rise}, {0, size.profile_radius}, true);
  outline.LineTo({radius, height});
  outline.LineTo({0, height});
  return outlined(outline.Text(), {radius, height}, std::move(plan));
}

}  // namespace tooldb

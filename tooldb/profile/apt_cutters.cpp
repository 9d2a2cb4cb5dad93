#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>

#include "tooldb/platform/guard.h"
#include "tooldb/profile/angles.h"
#include "tooldb/profile/contour_text.h"
#include "tooldb/tool_makers.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

// The value of a parameter that is not given.
constexpr float kNotGiven = 1e8F;
constexpr double kShortest = 1e-6;

bool are_given(std::initializer_list<float> values) {
  return std::ranges::all_of(values, [](float v) { return v != kNotGiven && std::isfinite(v); });
}

/// The numbers of the APT CUTTER statement (ISO 4343), angles in degrees.
struct AptMill {
  double d;
  double r;
  double e;
  double f;
  double alpha;
  double beta;
  double h;

  double Size() const { return std::max(d / 2, r); }
};

bool is_in_range(const AptMill& m) {
  return m.d >= 0 && m.r >= 0 && m.h > kShortest && m.alpha >= 0 && m.alpha < 90 && m.beta > -90 &&
         m.beta < 90 && m.alpha + m.beta < 90;
}

/// The corner circle where it touches both lines; both points are where the lines meet when it
/// has no radius.
struct Corner {
  Vec2 centre;
  Vec2 lower;
  Vec2 upper;
};

// The centre of the circle that touches both lines, or the given one when that is another: then
// the corner is a barrel's or a lens's, and the diameter does not count.
Vec2 corner_centre(const AptMill& m, Vec2 meeting) {
  constexpr double kAgreement = 1e-3;
  const double t = m.r * tangent((90 - m.alpha - m.beta) / 2);
  const Vec2 along{cos_degrees(m.alpha), sin_degrees(m.alpha)};
  const Vec2 touching = meeting - t * along + m.r * Vec2{-along.y, along.x};
  const bool none = m.e == 0 && m.f == 0;
  const double slack = kAgreement * m.Size();
  const bool same = std::abs(m.e - touching.x) <= slack && std::abs(m.f - touching.y) <= slack;
  return none || same ? touching : Vec2{m.e, m.f};
}

Corner apt_corner(const AptMill& m) {
  const Vec2 meeting{m.d / 2, m.d / 2 * tangent(m.alpha)};
  if (m.r <= kShortest) return {meeting, meeting, meeting};
  const Vec2 c = corner_centre(m, meeting);
  return {c, c + m.r * Vec2{sin_degrees(m.alpha), -cos_degrees(m.alpha)},
          c + m.r * Vec2{cos_degrees(m.beta), -sin_degrees(m.beta)}};
}

// Posts round the numbers: a value that misses its bound by no more than `slack` is the bound.
bool bring_above(double& value, double bound, double slack) {
  if (!(value >= bound - slack)) return false;
  value = std::max(value, bound);
  return true;
}

bool bring_below(double& value, double bound, double slack) {
  if (!(value <= bound + slack)) return false;
  value = std::min(value, bound);
  return true;
}

// Appends the points of the arc after its start, at most 2 degrees apart.
void append_arc(Polyline& points, Vec2 centre, double radius, double from, double to) {
  const int count = std::max(1, static_cast<int>(std::ceil((to - from) / 2 - 1e-9)));
  for (int i = 1; i <= count; ++i) {
    const double angle = from + (to - from) * i / count;
    points.push_back(centre + radius * Vec2{cos_degrees(angle), sin_degrees(angle)});
  }
}

// Appends the corner; its widest point is among the points.
void append_corner(Polyline& points, const AptMill& m, const Corner& corner) {
  points.push_back(corner.lower);
  if (m.r <= kShortest) return;
  double from = m.alpha - 90;
  if (m.beta < 0) {
    append_arc(points, corner.centre, m.r, from, 0);
    from = 0;
  }
  append_arc(points, corner.centre, m.r, from, -m.beta);
  points.back() = corner.upper;
}

std::optional<Polyline> apt_outline(const AptMill& m) {
  constexpr double kRounding = 1e-4;
  Corner corner = apt_corner(m);
  const double slack = kRounding * m.Size();
  if (!bring_above(corner.lower.x, 0, slack) || !bring_above(corner.lower.y, 0, slack) ||
      !bring_above(corner.upper.x, 0, slack) || !bring_below(corner.upper.y, m.h, slack)) {
    return std::nullopt;
  }
  // A ball stays a ball.
  if (m.r > kShortest && corner.lower.x < slack) corner.lower.x = 0;
  double top = corner.upper.x + (m.h - corner.upper.y) * tangent(m.beta);
  if (!bring_above(top, 0, slack)) return std::nullopt;
  if (std::max({corner.lower.x, corner.upper.x, top}) <= kShortest) return std::nullopt;
  Polyline points{{0, 0}};
  append_corner(points, m, corner);
  points.insert(points.end(), {{top, m.h}, {0, m.h}});
  return points;
}

/// A turning edge: nose radius, length of an edge from the sharp point, included angle in
/// degrees, height of the body.
struct AptTurn {
  double r;
  double l;
  double angle;
  double h;
};

std::optional<std::vector<ContourSegment>> apt_turn_outline(const AptTurn& m) {
  if (!(m.r >= 0 && m.l > kShortest && m.angle > 0 && m.angle < 180 && m.h >= 0)) {
    return std::nullopt;
  }
  const double w = m.angle / 2;
  const Vec2 edge{sin_degrees(w), cos_degrees(w)};
  const Vec2 sharp{0, m.r - m.r / edge.x};
  const double t = m.r / tangent(w);
  const Vec2 end = sharp + m.l * edge;
  if (m.l <= t || (m.h > 0 && m.h < end.y)) return std::nullopt;
  const Vec2 touch = sharp + t * edge;
  const auto mirrored = [](Vec2 p) { return Vec2{-p.x, p.y}; };
  Polyline body{touch, end};
  if (m.h > 0) body.insert(body.end(), {{end.x, m.h}, {-end.x, m.h}});
  body.insert(body.end(), {mirrored(end), mirrored(touch)});
  std::vector<ContourSegment> outline;
  const Vec2 nose{0, m.r};
  if (m.r > 0) outline.push_back({{0, 0}, touch, nose, SegmentKind::kCcw});
  for (std::size_t i = 1; i < body.size(); ++i) {
    outline.push_back({body[i - 1], body[i], {}, SegmentKind::kLine});
  }
  if (m.r > 0) outline.push_back({mirrored(touch), {0, 0}, nose, SegmentKind::kCcw});
  return outline;
}

/// Makes the contour text of a maker the item's own; false when there is no text.
template <class MakeText>
bool give_profile(tdbItem& item, MakeText&& make_text) {
  return guarded(false, [&] {
    const std::optional<std::string> text = make_text();
    if (text) item.SetProfileXml(text->c_str());
    return text.has_value();
  });
}

}  // namespace
}  // namespace tooldb

bool tdbMakeAptMillCutter(tdbToolCutter* cutter, float d, float r, float e, float f, float alpha,
                          float beta, float h) {
  const tooldb::AptMill mill{d, r, e, f, alpha, beta, h};
  if (cutter == nullptr || !tooldb::are_given({d, r, e, f, alpha, beta, h}) ||
      !tooldb::is_in_range(mill)) {
    return false;
  }
  return tooldb::give_profile(*cutter, [&]() -> std::optional<std::string> {
    const auto outline = tooldb::apt_outline(mill);
    if (!outline) return std::nullopt;
    return tooldb::fixed_line_text(*outline);
  });
}

bool tdbMakeAptMillShank(tdbToolShank* shank, float diameter, float height) {
  constexpr double kNothing = 0.00001;
  if (shank == nullptr || !tooldb::are_given({diameter, height})) return false;
  if (diameter < kNothing || height < kNothing) return true;
  const double r = diameter * 0.5;
  const double h = height;
  const auto line = tooldb::SegmentKind::kLine;
  const tooldb::ContourSegment lines[] = {
      {{0, 0}, {r, 0}, {}, line}, {{r, 0}, {r, h}, {}, line}, {{r, h}, {0, h}, {}, line}};
  return tooldb::give_profile(
      *shank, [&] { return std::optional<std::string>(tooldb::contour_text(lines)); });
}

bool tdbMakeAptTurnCutter(tdbToolCutter* cutter, float d, float l, float angle, float h) {
  if (cutter == nullptr || !tooldb::are_given({d, l, angle, h})) return false;
  return tooldb::give_profile(*cutter, [&]() -> std::optional<std::string> {
    const auto outline = tooldb::apt_turn_outline({d * 0.5, l, angle, h});
    if (!outline) return std::nullopt;
    return tooldb::contour_text(*outline);
  });
}

bool tdbMakeAptTurnShank(tdbToolShank* /*shank*/, float /*diameter*/, float /*height*/) {
  return false;
}

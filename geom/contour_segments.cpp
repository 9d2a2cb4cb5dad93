#include "geom/contour_segments.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tooldb {
namespace {

using std::numbers::pi;

// Corners closer than this are one: what counts as the length 0 in a tool's parameters.
constexpr double kSameCorner = 1e-6;
// Lines shorter than this are left out: they come of rounding where an arc fills its side.
constexpr double kNoLine = 1e-9;
// Six printed digits must not refuse a corner that fits.
constexpr double kFitSlack = 1e-5;
// Quadrant points closer than this angle to an end of an arc are that end.
constexpr double kSameAngle = 1e-9;
constexpr double kDefaultTolerance = 1e-3;
constexpr double kFinestTolerance = 1e-9;
// Bounds time and memory: some full circles at the finest tolerance.
constexpr double kMostChords = 1 << 18;

// A corner between two sides of its outline.
struct Corner {
  Vec2 point;
  double radius = 0;
  double half_turn_tan = 0;  // tangent length of radius 1; 0 without an arc
  Vec2 in;                   // unit vectors of the sides
  Vec2 out;

  double Tangent() const { return radius > 0 ? radius * half_turn_tan : 0; }
};

bool is_valid(const SharpCorner& corner) {
  return is_finite(corner.point) && corner.radius >= 0 && std::isfinite(corner.radius);
}

bool absorb(Corner& kept, const Corner& next) {
  if (distance(kept.point, next.point) > kSameCorner) return false;
  kept.radius = std::max(kept.radius, next.radius);
  return true;
}

// The different corners in order; none when one of them is not valid.
std::vector<Corner> different_corners(std::span<const SharpCorner> sharp) {
  if (!std::ranges::all_of(sharp, is_valid)) return {};
  std::vector<Corner> corners;
  for (const SharpCorner& s : sharp) {
    const Corner corner{s.point, s.radius, 0, {}, {}};
    if (corners.empty() || !absorb(corners.back(), corner)) corners.push_back(corner);
  }
  return corners;
}

void measure_turn(Corner& corner, Vec2 before, Vec2 after) {
  const Vec2 in = corner.point - before;
  const Vec2 out = after - corner.point;
  corner.in = (1 / length(in)) * in;
  corner.out = (1 / length(out)) * out;
  // tan(d/2) of the turn d, exactly 1 for a right angle; infinite for a turn back.
  corner.half_turn_tan =
      std::abs(cross(corner.in, corner.out)) / std::max(0.0, 1 + dot(corner.in, corner.out));
}

// Shrinks the two radii of a side to what fits, within the slack.
bool fit_side(Corner& a, Corner& b) {
  const double side = distance(a.point, b.point);
  const double needed = a.Tangent() + b.Tangent();
  if (needed <= side) return true;
  if (!(needed <= side + kFitSlack * std::max(1.0, side))) return false;
  a.radius *= side / needed;
  b.radius *= side / needed;
  return true;
}

// Puts segments end to end from a first point.
class ContourBuilder {
 public:
  explicit ContourBuilder(Vec2 start) : at_(start) {}

  void Line(Vec2 to) {
    if (distance(at_, to) <= kNoLine) return;
    segments_.push_back({at_, to, {}, SegmentKind::kLine});
    at_ = to;
  }
  void Arc(Vec2 to, Vec2 center, SegmentKind kind) {
    segments_.push_back({at_, to, center, kind});
    at_ = to;
  }
  std::vector<ContourSegment> Take() { return std::move(segments_); }

 private:
  Vec2 at_;
  std::vector<ContourSegment> segments_;
};

struct CornerArc {
  Vec2 start;
  Vec2 end;
  Vec2 center;
  SegmentKind kind;

  Vec2 Middle(Vec2 corner) const {
    const Vec2 out = corner - center;
    return center + (distance(start, center) / length(out)) * out;
  }
};

// The arc of a corner, nothing when it stays sharp.
std::optional<CornerArc> corner_arc(const Corner& corner) {
  const double t = corner.Tangent();
  if (!(t > kNoLine)) return std::nullopt;
  const bool left = cross(corner.in, corner.out) > 0;
  const Vec2 start = corner.point - t * corner.in;
  const Vec2 inward = (left ? corner.radius : -corner.radius) * Vec2{-corner.in.y, corner.in.x};
  return CornerArc{start, corner.point + t * corner.out, start + inward,
                   left ? SegmentKind::kCcw : SegmentKind::kCw};
}

void add_rounded(ContourBuilder& contour, const Corner& corner) {
  const auto arc = corner_arc(corner);
  contour.Line(arc ? arc->start : corner.point);
  if (arc) contour.Arc(arc->end, arc->center, arc->kind);
}

std::vector<ContourSegment> open_contour(std::span<const Corner> corners) {
  ContourBuilder contour(corners.front().point);
  for (const Corner& corner : corners.subspan(1)) add_rounded(contour, corner);
  return contour.Take();
}

std::vector<ContourSegment> closed_contour(std::span<const Corner> corners) {
  const Corner& first = corners.front();
  const auto arc = corner_arc(first);
  const Vec2 start = arc ? arc->Middle(first.point) : first.point;
  ContourBuilder contour(start);
  if (arc) contour.Arc(arc->end, arc->center, arc->kind);
  for (const Corner& corner : corners.subspan(1)) add_rounded(contour, corner);
  contour.Line(arc ? arc->start : start);
  if (arc) contour.Arc(start, arc->center, arc->kind);
  return contour.Take();
}

// The chords of one part of an arc that no quadrant point divides.
struct ArcPart {
  Vec2 center;
  double angle;
  double sweep;
  double radius;
  double radius_step;
};

void append_inner_points(std::vector<Vec2>& points, const ArcPart& part, int count) {
  for (int i = 1; i < count; ++i) {
    const double t = static_cast<double>(i) / count;
    const double angle = part.angle + t * part.sweep;
    const double radius = part.radius + t * part.radius_step;
    points.push_back(part.center + radius * Vec2{std::cos(angle), std::sin(angle)});
  }
}

// Where the axis of the quarter turn `quarter` (0: +x, 1: +y, ...) meets a circle.
Vec2 quadrant_point(Vec2 center, double radius, int quarter) {
  constexpr Vec2 kDirections[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
  return center + radius * kDirections[static_cast<unsigned>(quarter) & 3U];
}

// How finely arcs are replaced: the share is what the chain may have of the chords that it needs.
struct Fineness {
  double tolerance;
  double share;
};

double widest_radius(const ContourSegment& arc) {
  return std::max(distance(arc.start, arc.center), distance(arc.end, arc.center));
}

Fineness fineness(std::span<const ContourSegment> segments, double tolerance) {
  if (!(tolerance > 0)) tolerance = kDefaultTolerance;
  double needed = 0;
  for (const ContourSegment& s : segments) {
    const double sweep = std::abs(swept_angle(s));
    if (sweep > 0) needed += chord_count(widest_radius(s), sweep, tolerance);
  }
  return {tolerance, needed > kMostChords ? kMostChords / needed : 1};
}

int allowed_chords(double radius, double sweep, const Fineness& how) {
  return static_cast<int>(std::ceil(how.share * chord_count(radius, sweep, how.tolerance)));
}

void append_arc(std::vector<Vec2>& points, const ContourSegment& arc, const Fineness& how) {
  const double sweep = swept_angle(arc);
  const Vec2 from = arc.start - arc.center;
  const double first = std::atan2(from.y, from.x);
  const double r0 = length(from);
  const double r1 = distance(arc.end, arc.center);
  const auto radius_at = [&](double turned) { return r0 + (r1 - r0) * turned / sweep; };
  double done = 0;
  const auto go_to = [&](double turned) {
    const ArcPart part{arc.center, first + done, turned - done, radius_at(done),
                       radius_at(turned) - radius_at(done)};
    append_inner_points(points, part,
                        allowed_chords(widest_radius(arc), std::abs(part.sweep), how));
    done = turned;
  };
  const int step = sweep > 0 ? 1 : -1;
  const double quarters = first / (pi / 2);
  const int before = static_cast<int>(step > 0 ? std::floor(quarters) : std::ceil(quarters));
  for (int i = 1; i <= 4; ++i) {
    const int quarter = before + i * step;
    const double turned = quarter * (pi / 2) - first;
    if (std::abs(turned) <= kSameAngle || std::abs(turned) >= std::abs(sweep) - kSameAngle)
      continue;
    go_to(turned);
    points.push_back(quadrant_point(arc.center, radius_at(turned), quarter));
  }
  go_to(sweep);
  points.push_back(arc.end);
}

// Goes on from the last point when the segment starts there.
void append_segment(std::vector<Vec2>& points, const ContourSegment& segment, const Fineness& how) {
  if (points.empty() || !(distance(points.back(), segment.start) <= how.tolerance)) {
    points.push_back(segment.start);
  }
  const double sweep = swept_angle(segment);
  if (sweep != 0 && std::isfinite(sweep)) {
    append_arc(points, segment, how);
  } else {
    points.push_back(segment.end);
  }
}

// Integrals of x dy and x^2 dy along a segment.
struct Moments {
  double area = 0;
  double square = 0;
};

Moments line_moments(Vec2 a, Vec2 b) {
  const double dy = b.y - a.y;
  return {dy * (a.x + b.x) / 2, dy * (a.x * a.x + a.x * b.x + b.x * b.x) / 3};
}

// Antiderivatives over the angle of x = cx + r cos a, dy = r cos a da.
Moments arc_moments_to(double cx, double r, double angle) {
  const double s = std::sin(angle);
  const double half = angle / 2 + std::sin(2 * angle) / 4;
  return {cx * r * s + r * r * half,
          cx * cx * r * s + 2 * cx * r * r * half + r * r * r * (s - s * s * s / 3)};
}

Moments moments(const ContourSegment& segment) {
  const double sweep = swept_angle(segment);
  if (sweep == 0) return line_moments(segment.start, segment.end);
  const Vec2 from = segment.start - segment.center;
  const double r = length(from);
  const double angle = std::atan2(from.y, from.x);
  const Moments begin = arc_moments_to(segment.center.x, r, angle);
  const Moments end = arc_moments_to(segment.center.x, r, angle + sweep);
  return {end.area - begin.area, end.square - begin.square};
}

}  // namespace

std::optional<std::vector<ContourSegment>> round_corners(std::span<const SharpCorner> corners) {
  std::vector<Corner> merged = different_corners(corners);
  if (merged.size() < 2) return std::nullopt;
  for (std::size_t i = 1; i + 1 < merged.size(); ++i) {
    measure_turn(merged[i], merged[i - 1].point, merged[i + 1].point);
  }
  for (std::size_t i = 1; i < merged.size(); ++i) {
    if (!fit_side(merged[i - 1], merged[i])) return std::nullopt;
  }
  return open_contour(merged);
}

std::optional<std::vector<ContourSegment>> round_closed_corners(
    std::span<const SharpCorner> corners) {
  std::vector<Corner> merged = different_corners(corners);
  if (merged.size() > 1 && absorb(merged.front(), merged.back())) merged.pop_back();
  const std::size_t n = merged.size();
  if (n < 3) return std::nullopt;
  for (std::size_t i = 0; i < n; ++i) {
    measure_turn(merged[i], merged[(i + n - 1) % n].point, merged[(i + 1) % n].point);
  }
  for (std::size_t i = 0; i < n; ++i) {
    if (!fit_side(merged[i], merged[(i + 1) % n])) return std::nullopt;
  }
  return closed_contour(merged);
}

double swept_angle(const ContourSegment& segment) {
  if (segment.kind == SegmentKind::kLine) return 0;
  const Vec2 from = segment.start - segment.center;
  const Vec2 to = segment.end - segment.center;
  const double direction = segment.kind == SegmentKind::kCcw ? 1 : -1;
  if (from == to) return direction * 2 * pi;
  const double turn = direction * std::atan2(cross(from, to), dot(from, to));
  return direction * (turn < 0 ? turn + 2 * pi : turn);
}

int chord_count(double radius, double sweep, double tolerance) {
  if (!(radius > 0) || !std::isfinite(sweep)) return 1;
  constexpr double kQuarterSagitta = 1 - std::numbers::sqrt2 / 2;
  const double relative = std::clamp(tolerance / radius, kFinestTolerance, kQuarterSagitta);
  // 2 acos(1 - s) = 4 asin(sqrt(s / 2)), which keeps its digits for small s.
  const double chord = 4 * std::asin(std::sqrt(relative / 2));
  return std::max(1, static_cast<int>(std::ceil(sweep / chord - 1e-9)));
}

std::vector<Vec2> flatten(std::span<const ContourSegment> segments, double tolerance) {
  const Fineness how = fineness(segments, tolerance);
  std::vector<Vec2> points;
  for (const ContourSegment& segment : segments) append_segment(points, segment, how);
  return points;
}

std::vector<Vec2> flatten_each(std::span<const ContourSegment> segments, double tolerance) {
  const Fineness how = fineness(segments, tolerance);
  std::vector<Vec2> points;
  for (const ContourSegment& segment : segments) {
    std::vector<Vec2> own;
    append_segment(own, segment, how);
    points.insert(points.end(), own.begin(), own.end());
  }
  return points;
}

double signed_area(std::span<const ContourSegment> segments) {
  if (segments.empty()) return 0;
  double area = line_moments(segments.back().end, segments.front().start).area;
  for (const ContourSegment& segment : segments) area += moments(segment).area;
  return area;
}

double volume_of_revolution(std::span<const ContourSegment> segments) {
  double sum = 0;
  for (const ContourSegment& segment : segments) sum += moments(segment).square;
  return pi * sum;
}

}  // namespace tooldb

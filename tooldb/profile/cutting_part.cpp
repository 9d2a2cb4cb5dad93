#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "tooldb/platform/guard.h"
#include "tooldb/profile.h"
#include "tooldb/profile/body_outline.h"
#include "tooldb/tool_parts.h"

// The part of a cutter's outline that cuts.

namespace tooldb {
namespace {

using Segments = std::vector<ContourSegment>;
using Runs = std::vector<Segments>;

bool is_line(const ContourSegment& s) { return s.kind == SegmentKind::kLine; }
bool is_on_axis(const ContourSegment& s) { return is_line(s) && s.start.x == 0 && s.end.x == 0; }

// The unbroken runs of the segments that `cuts` accepts.
template <class Predicate>
Runs runs_of(const Segments& segments, const Predicate& cuts) {
  Runs runs;
  bool unbroken = false;
  for (const ContourSegment& segment : segments) {
    const bool in = cuts(segment);
    if (in && !unbroken) runs.emplace_back();
    if (in) runs.back().push_back(segment);
    unbroken = in;
  }
  return runs;
}

// The segments inside the band of the cutting edge, without the top of the body.
Runs band_runs(Outline outline) {
  const CutBand band = outline.cuts;
  Segments& segments = outline.segments;
  const ContourSegment& last = segments.back();
  if (is_line(last) && last.start.y == last.end.y) segments.pop_back();
  constexpr double kRounding = 1e-9;
  const auto is_in = [&](Vec2 p) {
    return p.y >= band.low - kRounding && p.y <= band.high + kRounding;
  };
  return runs_of(segments, [&](const ContourSegment& s) {
    return is_in(s.start) && is_in(s.end) && !is_on_axis(s);
  });
}

// All of a contour text but its last element.
Runs text_runs(Segments segments) {
  segments.pop_back();
  return runs_of(segments, [](const ContourSegment& s) { return !is_on_axis(s); });
}

// The part of a closed contour below its leftmost and rightmost points.
Runs lower_half(const Segments& segments) {
  const auto lower_end = [&](auto is_farther) {
    std::size_t best = 0;
    for (std::size_t i = 1; i < segments.size(); ++i) {
      const Vec2 p = segments[i].start;
      const Vec2 q = segments[best].start;
      if (is_farther(p.x, q.x) || (p.x == q.x && p.y < q.y)) best = i;
    }
    return best;
  };
  const std::size_t left = lower_end(std::less<>());
  const std::size_t right = lower_end(std::greater<>());
  Segments run;
  for (std::size_t i = left; i != right; i = (i + 1) % segments.size()) run.push_back(segments[i]);
  return {run};
}

// The end of an edge that runs from the nose at `near` to `far`, when it is to be `length` long
// from the sharp corner, which lies on x = 0.
Vec2 edge_end(Vec2 near, Vec2 far, double length) {
  const Vec2 along = (1 / distance(near, far)) * (far - near);
  const double to_corner = along.x == 0 ? 0 : std::abs(near.x / along.x);
  return near + std::clamp(length - to_corner, 0.0, distance(near, far)) * along;
}

// The nose of an insert with the edges beside it, up to the length of the edge where it is set. An
// edge that the corner radii use up is not there.
Runs nose_run(const Segments& segments, double length) {
  const std::size_t nose = is_line(segments.front()) ? 0 : 1;
  ContourSegment right = segments[nose];
  ContourSegment left = segments[segments.size() - 1 - nose];
  Segments run;
  if (is_line(left)) {
    left.start = edge_end(left.end, left.start, length);
    run.push_back(left);
  }
  if (nose == 1) run.insert(run.end(), {segments.back(), segments.front()});
  if (is_line(right)) {
    right.end = edge_end(right.start, right.end, length);
    run.push_back(right);
  }
  return {run};
}

double set_length(const tdbItem& cutter) {
  const double length = parameter_number(cutter.GetParam("LENGTH", "")).value_or(0);
  return length > 0 ? length : std::numeric_limits<double>::infinity();
}

bool is_closed(const Segments& segments) { return segments.back().end == segments.front().start; }

bool is_circle(const Segments& segments) { return std::ranges::none_of(segments, is_line); }

Runs cutting_runs(const tdbToolCutter& cutter, Outline outline) {
  if (!is_extruded(cutter)) {
    return body_type(cutter) == nullptr ? text_runs(std::move(outline.segments))
                                        : band_runs(std::move(outline));
  }
  if (is_circle(outline.segments)) return lower_half(outline.segments);
  if (body_type(cutter) != nullptr) return nose_run(outline.segments, set_length(cutter));
  return is_closed(outline.segments) ? lower_half(outline.segments)
                                     : text_runs(std::move(outline.segments));
}

}  // namespace
}  // namespace tooldb

bool tdbProfile::HilightCuttingProfile(const tdbToolCutter& cutter, double tolerance,
                                       std::vector<std::vector<Point2d<double>>>& pieces) {
  return tooldb::guarded(false, [&] {
    tooldb::Outline outline = tooldb::body_outline(cutter);
    if (!outline.Stands()) return false;
    for (const auto& run : tooldb::cutting_runs(cutter, std::move(outline))) {
      pieces.push_back(tooldb::flatten(run, tolerance));
    }
    return true;
  });
}

#include "geom/polyline.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <numbers>
#include <utility>
#include <vector>

namespace tooldb {
namespace {

double distance_to_segment(Vec2 p, Vec2 a, Vec2 b) {
  const Vec2 along = b - a;
  const double square = dot(along, along);
  const double t = square > 0 ? std::clamp(dot(p - a, along) / square, 0.0, 1.0) : 0;
  return distance(p, a + t * along);
}

struct Farthest {
  std::size_t index = 0;
  double distance = 0;
};

Farthest farthest_between(std::span<const Vec2> points, std::size_t first, std::size_t last) {
  Farthest far;
  for (std::size_t i = first + 1; i < last; ++i) {
    const double d = distance_to_segment(points[i], points[first], points[last]);
    if (d > far.distance) far = {i, d};
  }
  return far;
}

// The points of a contour as a chain from which points can be taken out.
class Simplifier {
 public:
  Simplifier(std::span<const Vec2> points, double nearest)
      : points_(points), nearest_(nearest), links_(points.size()), waits_(points.size(), true) {
    for (std::size_t i = 0; i < points.size(); ++i) links_[i] = {i - 1, i + 1};
    for (std::size_t i = 1; i + 1 < points.size(); ++i) waiting_.push_back(i);
  }

  Polyline Run() {
    while (!waiting_.empty()) {
      const std::size_t i = waiting_.front();
      waiting_.pop_front();
      waits_[i] = false;
      if (IsNeedless(i)) Remove(i);
    }
    Polyline kept;
    for (std::size_t i = 0; i < points_.size(); i = links_[i].next) kept.push_back(points_[i]);
    return kept;
  }

 private:
  struct Links {
    std::size_t before;
    std::size_t next;
  };

  std::size_t Last() const { return points_.size() - 1; }

  bool IsNeedless(std::size_t i) const {
    const Vec2 in = points_[i] - points_[links_[i].before];
    const Vec2 out = points_[links_[i].next] - points_[i];
    const double in_length = length(in);
    const double out_length = length(out);
    if (in_length < nearest_ || in_length == 0) return true;
    if (links_[i].next == Last() && (out_length < nearest_ || out_length == 0)) return true;
    static const double kStraight = std::cos(std::numbers::pi * 0.01 / 180);
    return dot(in, out) > kStraight * in_length * out_length;
  }

  void Remove(std::size_t i) {
    const auto [before, next] = links_[i];
    links_[before].next = next;
    links_[next].before = before;
    Touch(before);
    Touch(next);
  }

  void Touch(std::size_t i) {
    if (i == 0 || i == Last() || waits_[i]) return;
    waits_[i] = true;
    waiting_.push_back(i);
  }

  std::span<const Vec2> points_;
  double nearest_;
  std::vector<Links> links_;
  std::vector<bool> waits_;
  std::deque<std::size_t> waiting_;
};

}  // namespace

double signed_area(std::span<const Vec2> points) {
  if (points.size() < 3) return 0;
  double twice = cross(points.back(), points.front());
  for (std::size_t i = 1; i < points.size(); ++i) twice += cross(points[i - 1], points[i]);
  return twice / 2;
}

Polyline thin_out(std::span<const Vec2> points, double tolerance) {
  if (points.size() < 3) return Polyline(points.begin(), points.end());
  std::vector<bool> keep(points.size(), false);
  keep.front() = keep.back() = true;
  std::vector<std::pair<std::size_t, std::size_t>> open = {{0, points.size() - 1}};
  while (!open.empty()) {
    const auto [first, last] = open.back();
    open.pop_back();
    const Farthest far = farthest_between(points, first, last);
    if (!(far.distance > tolerance)) continue;
    keep[far.index] = true;
    open.emplace_back(first, far.index);
    open.emplace_back(far.index, last);
  }
  Polyline kept;
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (keep[i]) kept.push_back(points[i]);
  }
  return kept;
}

void simplify(Polyline& points, double tolerance) {
  if (points.size() < 3) return;
  constexpr double kNearestPart = 0.1;
  points = Simplifier(points, kNearestPart * tolerance).Run();
}

}  // namespace tooldb

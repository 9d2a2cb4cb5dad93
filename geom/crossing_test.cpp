#include "geom/crossing_test.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace tooldb {
namespace {

// Part of the contour's size below which two places count as touching: far above the rounding of
// the products, far below anything that is made.
constexpr double kNear = 1e-10;
// Cells per edge beyond which looking further costs more than it saves.
constexpr std::size_t kCellsPerEdge = 6;

struct Bounds {
  Vec2 low;
  Vec2 high;
};

Bounds bounds_of(Vec2 a, Vec2 b) {
  return {{std::min(a.x, b.x), std::min(a.y, b.y)}, {std::max(a.x, b.x), std::max(a.y, b.y)}};
}

bool are_apart(const Bounds& a, const Bounds& b) {
  return a.high.x < b.low.x || b.high.x < a.low.x || a.high.y < b.low.y || b.high.y < a.low.y;
}

Bounds bounds_of(std::span<const Vec2> points) {
  Bounds all{points.front(), points.front()};
  for (Vec2 p : points) {
    all.low = {std::min(all.low.x, p.x), std::min(all.low.y, p.y)};
    all.high = {std::max(all.high.x, p.x), std::max(all.high.y, p.y)};
  }
  return all;
}

// Turns one way everywhere, and round once: x changes its direction twice at most.
bool is_convex(std::span<const Vec2> ring) {
  const std::size_t n = ring.size();
  Vec2 in = ring[0] - ring[n - 1];
  bool left = false;
  bool right = false;
  int reversals = 0;
  double last_dx = 0;
  double first_dx = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const Vec2 out = (i + 1 < n ? ring[i + 1] : ring[0]) - ring[i];
    const double turn = cross(in, out);
    left |= turn > 0;
    right |= turn < 0;
    if ((left && right) || (turn == 0 && dot(in, out) <= 0)) return false;
    if (out.x != 0) {
      reversals += last_dx * out.x < 0;
      last_dx = out.x;
      if (first_dx == 0) first_dx = out.x;
    }
    in = out;
  }
  return left != right && reversals + (last_dx * first_dx < 0) <= 2;
}

// Whether c and d lie clearly on one side of the line through a and b.
bool on_one_side(Vec2 a, Vec2 b, Vec2 c, Vec2 d, double near) {
  const double from_c = cross(b - a, c - a);
  const double from_d = cross(b - a, d - a);
  return (from_c > near && from_d > near) || (from_c < -near && from_d < -near);
}

// The edges of a ring, by the cells of a square grid that their bounds meet.
class EdgeGrid {
 public:
  explicit EdgeGrid(std::span<const Vec2> ring) : ring_(ring), all_(bounds_of(ring)) {
    const Vec2 size = all_.high - all_.low;
    near_ = kNear * (size.x + size.y) * (size.x + size.y);
    cells_ = static_cast<std::uint32_t>(std::sqrt(static_cast<double>(ring.size()))) + 1;
    per_unit_ = {size.x > 0 ? cells_ * 0.999999 / size.x : 0,
                 size.y > 0 ? cells_ * 0.999999 / size.y : 0};
  }

  bool IsSimple() {
    if (!Fill()) return false;
    for (std::size_t cell = 0; cell + 1 < first_.size(); ++cell) {
      if (MayCrossIn(cell)) return false;
    }
    return true;
  }

 private:
  struct Range {
    std::uint32_t x0, x1, y0, y1;
  };

  Vec2 From(std::uint32_t edge) const { return ring_[edge]; }
  Vec2 To(std::uint32_t edge) const { return ring_[edge + 1 < ring_.size() ? edge + 1 : 0]; }

  Range CellsOf(std::uint32_t edge) const {
    const Bounds& b = bounds_[edge];
    const auto column = [&](double x) {
      return static_cast<std::uint32_t>((x - all_.low.x) * per_unit_.x);
    };
    const auto row = [&](double y) {
      return static_cast<std::uint32_t>((y - all_.low.y) * per_unit_.y);
    };
    return {column(b.low.x), column(b.high.x), row(b.low.y), row(b.high.y)};
  }

  template <class Visit>
  void VisitCells(std::uint32_t edge, Visit visit) const {
    const Range r = CellsOf(edge);
    for (std::uint32_t y = r.y0; y <= r.y1; ++y) {
      for (std::uint32_t x = r.x0; x <= r.x1; ++x) visit(std::size_t{y} * cells_ + x);
    }
  }

  // Sorts the edges by cell: first_[cell] is where those of a cell begin.
  bool Fill() {
    const auto edges = static_cast<std::uint32_t>(ring_.size());
    bounds_.reserve(edges);
    for (std::uint32_t e = 0; e < edges; ++e) bounds_.push_back(bounds_of(From(e), To(e)));
    first_.assign(std::size_t{cells_} * cells_ + 1, 0);
    std::size_t entries = 0;
    for (std::uint32_t e = 0; e < edges; ++e) {
      const Range r = CellsOf(e);
      entries += std::size_t{r.x1 - r.x0 + 1} * (r.y1 - r.y0 + 1);
      if (entries > kCellsPerEdge * ring_.size() + 64) return false;
      VisitCells(e, [&](std::size_t cell) { ++first_[cell]; });
    }
    std::uint32_t end = 0;
    for (std::uint32_t& f : first_) f = end += f;
    edges_.resize(entries);
    for (std::uint32_t e = 0; e < edges; ++e) {
      VisitCells(e, [&](std::size_t cell) { edges_[--first_[cell]] = e; });
    }
    return true;
  }

  bool MayCrossIn(std::size_t cell) const {
    for (std::uint32_t i = first_[cell]; i < first_[cell + 1]; ++i) {
      for (std::uint32_t j = first_[cell]; j < i; ++j) {
        if (MayCross(edges_[i], edges_[j])) return true;
      }
    }
    return false;
  }

  bool MayCross(std::uint32_t e, std::uint32_t f) const {
    const auto last = static_cast<std::uint32_t>(ring_.size() - 1);
    if (are_apart(bounds_[e], bounds_[f])) return false;
    if (e > f) std::swap(e, f);
    // Where two edges in a row fold back, one of them touches a third.
    if (f == e + 1 || (e == 0 && f == last)) return false;
    return !on_one_side(From(e), To(e), From(f), To(f), near_) &&
           !on_one_side(From(f), To(f), From(e), To(e), near_);
  }

  std::span<const Vec2> ring_;
  Bounds all_;
  std::vector<Bounds> bounds_;  // of the edges
  double near_ = 0;
  std::uint32_t cells_ = 0;
  Vec2 per_unit_;
  std::vector<std::uint32_t> first_;
  std::vector<std::uint32_t> edges_;
};

}  // namespace

bool surely_does_not_cross(std::span<const Vec2> contour) {
  if (contour.size() > 1 && contour.front() == contour.back()) {
    contour = contour.first(contour.size() - 1);
  }
  constexpr std::size_t kMostEdges = 1U << 28;
  if (contour.size() < 3 || contour.size() > kMostEdges) return false;
  if (is_convex(contour)) return true;
  return contour.size() > 3 && EdgeGrid(contour).IsSimple();
}

}  // namespace tooldb

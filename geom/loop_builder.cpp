#include "geom/loop_builder.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <queue>
#include <tuple>
#include <utility>

namespace tooldb {
namespace {

// Segment i has the ends 2i, where it begins, and 2i + 1.
using End = std::size_t;
constexpr End kNone = std::numeric_limits<End>::max();
// A chain closes on itself only when it has a shape: not a lone segment back and forth.
constexpr std::size_t kFewestInLoop = 2;

// Segments linked at their ends into chains, each known by its two free ends.
class Chains {
 public:
  explicit Chains(const std::vector<LineSegment>& segments)
      : segments_(segments),
        joined_(2 * segments.size(), kNone),
        opposite_(2 * segments.size()),
        length_(2 * segments.size(), 1) {
    for (End e = 0; e < opposite_.size(); ++e) opposite_[e] = e ^ 1U;
  }

  std::size_t Ends() const { return joined_.size(); }
  Vec2 At(End e) const { return e % 2 == 0 ? segments_[e / 2].from : segments_[e / 2].to; }
  bool IsFree(End e) const { return joined_[e] == kNone; }
  bool MayJoin(End a, End b) const {
    return a != b && IsFree(a) && IsFree(b) && (opposite_[a] != b || length_[a] >= kFewestInLoop);
  }

  void Join(End a, End b) {
    joined_[a] = b;
    joined_[b] = a;
    const End left = opposite_[a];
    const End right = opposite_[b];
    if (left == b) return;
    const std::size_t length = length_[a] + length_[b];
    opposite_[left] = right;
    opposite_[right] = left;
    length_[left] = length_[right] = length;
  }

  std::vector<Polyline> Loops() const {
    std::vector<Polyline> loops;
    std::vector<bool> seen(segments_.size(), false);
    for (std::size_t i = 0; i < segments_.size(); ++i) {
      if (seen[i]) continue;
      Polyline loop;
      if (Follow(2 * i, seen, loop)) loops.push_back(std::move(loop));
    }
    return loops;
  }

 private:
  // Collects the points from an end on; true when the chain leads back to it.
  bool Follow(End start, std::vector<bool>& seen, Polyline& loop) const {
    End at = start;
    while (!seen[at / 2]) {
      seen[at / 2] = true;
      Add(loop, At(at));
      Add(loop, At(at ^ 1U));
      if (IsFree(at ^ 1U)) return false;
      at = joined_[at ^ 1U];
    }
    if (loop.size() > 1 && loop.front() == loop.back()) loop.pop_back();
    return at == start;
  }

  static void Add(Polyline& loop, Vec2 p) {
    if (loop.empty() || loop.back() != p) loop.push_back(p);
  }

  const std::vector<LineSegment>& segments_;
  std::vector<End> joined_;
  std::vector<End> opposite_;        // of a free end: the other free end of its chain
  std::vector<std::size_t> length_;  // of a free end: the segments of its chain
};

// Joins ends that arrive with ends that leave from the same coordinates.
void join_equal_ends(Chains& chains) {
  std::vector<End> ends(chains.Ends());
  std::iota(ends.begin(), ends.end(), End{0});
  const auto key = [&](End e) { return std::tuple(chains.At(e).x, chains.At(e).y, e); };
  std::ranges::sort(ends, {}, key);
  std::vector<End> arriving;
  std::vector<End> leaving;
  for (std::size_t i = 0; i < ends.size(); ++i) {
    (ends[i] % 2 == 0 ? leaving : arriving).push_back(ends[i]);
    if (i + 1 < ends.size() && chains.At(ends[i]) == chains.At(ends[i + 1])) continue;
    for (std::size_t k = 0; k < std::min(arriving.size(), leaving.size()); ++k) {
      chains.Join(arriving[k], leaving[k]);
    }
    arriving.clear();
    leaving.clear();
  }
}

// The free ends along the axis on which they are spread widest, to look for neighbours.
class FreeEnds {
 public:
  explicit FreeEnds(const Chains& chains) : chains_(chains) {
    Vec2 low{HUGE_VAL, HUGE_VAL};
    Vec2 high{-HUGE_VAL, -HUGE_VAL};
    for (End e = 0; e < chains.Ends(); ++e) {
      if (!chains.IsFree(e)) continue;
      ends_.push_back(e);
      const Vec2 p = chains.At(e);
      low = {std::min(low.x, p.x), std::min(low.y, p.y)};
      high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    along_x_ = high.x - low.x > high.y - low.y;
    std::ranges::sort(ends_, {}, [&](End e) { return std::pair(Along(e), e); });
  }

  std::size_t Size() const { return ends_.size(); }

  struct Pair {
    double gap;
    std::size_t place;  // of the end that looks for a partner
    End end;
    End partner;

    bool operator>(const Pair& other) const {
      return std::tie(gap, place) > std::tie(other.gap, other.place);
    }
  };

  // The nearest end that the one at `place` may be joined with, up to `limit` away.
  Pair Nearest(std::size_t place, double limit) const {
    Pair best{limit, place, ends_[place], kNone};
    for (std::size_t i = place + 1; i < ends_.size() && Try(i, best); ++i) {
    }
    for (std::size_t i = place; i > 0 && Try(i - 1, best); --i) {
    }
    return best;
  }

 private:
  double Along(End e) const { return along_x_ ? chains_.At(e).x : chains_.At(e).y; }

  // False when no end from here on can be nearer.
  bool Try(std::size_t place, Pair& best) const {
    const End other = ends_[place];
    if (best.partner != kNone && best.gap == 0) return false;
    if (std::abs(Along(other) - Along(best.end)) > best.gap) return false;
    const double gap = distance(chains_.At(other), chains_.At(best.end));
    const bool nearer = gap < best.gap || (best.partner == kNone && gap == best.gap);
    if (nearer && chains_.MayJoin(best.end, other)) {
      best.gap = gap;
      best.partner = other;
    }
    return true;
  }

  const Chains& chains_;
  std::vector<End> ends_;
  bool along_x_ = false;
};

void join_near_ends(Chains& chains, const LoopJoining& joining) {
  const FreeEnds free(chains);
  std::priority_queue<FreeEnds::Pair, std::vector<FreeEnds::Pair>, std::greater<>> nearest;
  const auto look = [&](std::size_t place) {
    const FreeEnds::Pair pair = free.Nearest(place, std::max(joining.grid, joining.max_gap));
    if (pair.partner != kNone) nearest.push(pair);
  };
  for (std::size_t place = 0; place < free.Size(); ++place) look(place);
  int steps = 0;
  while (!nearest.empty()) {
    const FreeEnds::Pair pair = nearest.top();
    nearest.pop();
    if (!chains.IsFree(pair.end)) continue;
    if (!chains.MayJoin(pair.end, pair.partner)) {
      look(pair.place);
      continue;
    }
    if (pair.gap > joining.grid && ++steps > joining.max_steps) return;
    chains.Join(pair.end, pair.partner);
  }
}

}  // namespace

std::vector<Polyline> build_loops(const std::vector<LineSegment>& segments,
                                  const LoopJoining& joining) {
  Chains chains(segments);
  join_equal_ends(chains);
  join_near_ends(chains, joining);
  return chains.Loops();
}

}  // namespace tooldb

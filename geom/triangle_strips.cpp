#include "geom/triangle_strips.h"

#include <algorithm>
#include <array>
#include <optional>
#include <tuple>
#include <utility>

namespace tooldb {
namespace {

bool uses_a_corner_twice(const IndexTriangle& t) {
  return t[0] == t[1] || t[1] == t[2] || t[2] == t[0];
}

// An edge of a triangle, in its winding, and the corner opposite.
struct Edge {
  std::uint32_t from;
  std::uint32_t to;
  std::size_t triangle;
  std::uint32_t opposite;
};

class StripMaker {
 public:
  explicit StripMaker(std::span<const IndexTriangle> triangles)
      : triangles_(triangles), taken_by_(triangles.size(), kFree) {
    for (std::size_t t = 0; t < triangles.size(); ++t) {
      if (uses_a_corner_twice(triangles[t])) continue;
      const auto& [a, b, c] = triangles[t];
      edges_.insert(edges_.end(), {{a, b, t, c}, {b, c, t, a}, {c, a, t, b}});
    }
    std::ranges::sort(edges_, {}, [](const Edge& e) { return std::tie(e.from, e.to, e.triangle); });
  }

  std::vector<Strip> Run() {
    neighbours_.resize(triangles_.size());
    for (const Edge& e : edges_) neighbours_[e.triangle] += Opposite(e).size();
    // The last in a queue is taken first, so that the first of the list come first.
    for (std::size_t t = triangles_.size(); t > 0; --t) Queue(t - 1);
    std::vector<Strip> strips;
    while (const auto start = LoneliestFree()) strips.push_back(LongestFrom(*start));
    return strips;
  }

 private:
  // Who has a triangle: none, a strip that stays, or the walk of that number.
  static constexpr std::size_t kFree = 0;
  static constexpr std::size_t kTaken = 1;

  struct Walk {
    Strip corners;
    std::vector<std::size_t> triangles;
  };

  static std::pair<std::uint32_t, std::uint32_t> Ends(const Edge& e) { return {e.from, e.to}; }

  // The edges from one corner to another: one, where the triangles are the boundary of a body.
  std::span<const Edge> EdgesBetween(std::uint32_t from, std::uint32_t to) const {
    const auto before = [](const Edge& a, const Edge& b) { return Ends(a) < Ends(b); };
    const auto [first, last] =
        std::equal_range(edges_.begin(), edges_.end(), Edge{from, to, 0, 0}, before);
    return {first, last};
  }
  std::span<const Edge> Opposite(const Edge& e) const { return EdgesBetween(e.to, e.from); }

  void Queue(std::size_t triangle) {
    queues_[std::min(neighbours_[triangle], queues_.size() - 1)].push_back(triangle);
  }

  // A strip that begins where few triangles are left around leaves fewer of them alone.
  std::optional<std::size_t> LoneliestFree() {
    for (std::size_t count = 0; count < queues_.size(); ++count) {
      while (!queues_[count].empty()) {
        const std::size_t t = queues_[count].back();
        queues_[count].pop_back();
        const bool is_current = std::min(neighbours_[t], queues_.size() - 1) == count;
        if (is_current && taken_by_[t] != kTaken && !uses_a_corner_twice(triangles_[t])) return t;
      }
    }
    return std::nullopt;
  }

  Strip LongestFrom(std::size_t first) {
    Walk longest;
    for (std::size_t turn = 0; turn < 3; ++turn) {
      Walk walk = WalkFrom(first, turn);
      if (walk.triangles.size() > longest.triangles.size()) longest = std::move(walk);
    }
    for (std::size_t t : longest.triangles) Take(t);
    return std::move(longest.corners);
  }

  void Take(std::size_t triangle) {
    taken_by_[triangle] = kTaken;
    const auto& [a, b, c] = triangles_[triangle];
    for (const auto& [from, to] : {std::pair(a, b), std::pair(b, c), std::pair(c, a)}) {
      for (const Edge& e : EdgesBetween(to, from)) {
        --neighbours_[e.triangle];
        if (taken_by_[e.triangle] != kTaken) Queue(e.triangle);
      }
    }
  }

  // Goes on over the edge of the last two corners as long as a triangle is there.
  Walk WalkFrom(std::size_t first, std::size_t turn) {
    ++walk_;
    const IndexTriangle& t = triangles_[first];
    Walk walk{{t[turn], t[(turn + 1) % 3], t[(turn + 2) % 3]}, {first}};
    taken_by_[first] = walk_;
    while (true) {
      std::uint32_t from = walk.corners[walk.corners.size() - 2];
      std::uint32_t to = walk.corners.back();
      if (walk.triangles.size() % 2 == 1) std::swap(from, to);
      const Edge* const next = FreeEdge(from, to);
      if (next == nullptr) return walk;
      taken_by_[next->triangle] = walk_;
      walk.triangles.push_back(next->triangle);
      walk.corners.push_back(next->opposite);
    }
  }

  const Edge* FreeEdge(std::uint32_t from, std::uint32_t to) const {
    for (const Edge& e : EdgesBetween(from, to)) {
      const std::size_t by = taken_by_[e.triangle];
      if (by != kTaken && by != walk_) return &e;
    }
    return nullptr;
  }

  std::span<const IndexTriangle> triangles_;
  std::vector<Edge> edges_;
  std::vector<std::size_t> taken_by_;
  std::size_t walk_ = kTaken;
  std::vector<std::size_t> neighbours_;             // of each triangle: free triangles at its edges
  std::array<std::vector<std::size_t>, 4> queues_;  // free triangles by that number
};

}  // namespace

std::vector<Strip> make_strips(std::span<const IndexTriangle> triangles) {
  return StripMaker(triangles).Run();
}

std::vector<IndexTriangle> triangles_of(std::span<const Strip> strips) {
  std::vector<IndexTriangle> triangles;
  for (const Strip& strip : strips) {
    for (std::size_t i = 2; i < strip.size(); ++i) {
      IndexTriangle t{strip[i - 2], strip[i - 1], strip[i]};
      if (i % 2 == 1) std::swap(t[0], t[1]);
      if (!uses_a_corner_twice(t)) triangles.push_back(t);
    }
  }
  return triangles;
}

}  // namespace tooldb

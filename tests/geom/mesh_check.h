#pragma once

#include <algorithm>
#include <array>
#include <map>
#include <span>
#include <tuple>
#include <utility>

#include "geom/vector_math.h"

/// @file
/// What a test asks of a mesh: closed, facing outwards, and of the right volume.

namespace tooldb {

struct MeshCheck {
  double volume = 0;           ///< by the divergence theorem; positive when facets face outwards
  long euler = 0;              ///< corners - edges + facets: 2 per ball, 0 per ring
  std::size_t open_edges = 0;  ///< edges that are not used as often one way as the other
  double worst_normal = 0;     ///< largest distance of a facet's normal from the true one
};

inline double signed_volume(std::span<const Facet> mesh) {
  double volume = 0;
  for (const Facet& f : mesh) volume += dot(f.a, cross(f.b, f.c)) / 6;
  return volume;
}

/// Corners count as one only where they are exactly equal.
inline MeshCheck check_mesh(std::span<const Facet> mesh) {
  using Key = std::tuple<double, double, double>;
  std::map<Key, int> corners;
  std::map<std::pair<int, int>, int> edges;  // uses one way less uses the other way
  MeshCheck check;
  for (const Facet& f : mesh) {
    std::array<int, 3> id{};
    const std::array points{f.a, f.b, f.c};
    for (std::size_t i = 0; i < 3; ++i) {
      const Vec3& p = points[i];
      const Key key{p.x + 0.0, p.y + 0.0, p.z + 0.0};
      id[i] = corners.emplace(key, static_cast<int>(corners.size())).first->second;
    }
    for (std::size_t i = 0; i < 3; ++i) {
      const int from = id[i];
      const int to = id[(i + 1) % 3];
      edges[std::minmax(from, to)] += from < to ? 1 : -1;
    }
    check.worst_normal = std::max(check.worst_normal, length(f.n - facet_normal(f.a, f.b, f.c)));
  }
  for (const auto& [edge, balance] : edges) check.open_edges += balance != 0;
  check.volume = signed_volume(mesh);
  check.euler = static_cast<long>(corners.size()) - static_cast<long>(edges.size()) +
                static_cast<long>(mesh.size());
  return check;
}

}  // namespace tooldb

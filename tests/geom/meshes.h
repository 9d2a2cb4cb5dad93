#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <random>
#include <span>
#include <tuple>
#include <vector>

#include "geom/extrude.h"
#include "geom/revolve.h"
#include "geom/vector_math.h"

/// @file
/// Meshes for tests, and what is asked of one: closed, facing outwards, and of the right volume.

namespace tooldb {

using Mesh = std::vector<Facet>;

inline Mesh revolved(const Polyline& outline, double tolerance = 0.01) {
  Mesh mesh;
  EXPECT_TRUE(revolve(outline, {tolerance}, mesh));
  return mesh;
}

inline Mesh extruded(const Polyline& outline, double y_min, double y_max) {
  Mesh mesh;
  EXPECT_TRUE(extrude(outline, y_min, y_max, mesh));
  return mesh;
}

inline Mesh both(Mesh a, const Mesh& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

inline Vec3 random_vector(std::mt19937& random, double size) {
  std::uniform_real_distribution<double> u(-size, size);
  return {u(random), u(random), u(random)};
}

/// Every corner moved by up to `size` along each axis.
inline Mesh shaken(Mesh mesh, double size) {
  std::mt19937 random(1);
  for (Facet& f : mesh) {
    for (Vec3* p : {&f.a, &f.b, &f.c}) *p = *p + random_vector(random, size);
  }
  return mesh;
}

/// Facets that have nothing to do with each other, in a cube of 40.
inline Mesh soup(std::size_t count, double size, unsigned seed) {
  std::mt19937 random(seed);
  Mesh mesh(count);
  for (Facet& f : mesh) {
    const Vec3 centre = random_vector(random, 20);
    for (Vec3* p : {&f.a, &f.b, &f.c}) *p = centre + random_vector(random, size);
    f.n = facet_normal(f.a, f.b, f.c);
  }
  return mesh;
}

struct MeshCheck {
  double volume = 0;           ///< by the divergence theorem; positive when facets face outwards
  long euler = 0;              ///< corners - edges + facets: 2 per ball, 0 per ring
  std::size_t open_edges = 0;  ///< edges that are not used as often one way as the other
  double worst_normal = 0;     ///< largest distance of a facet's normal from the true one
};

/// Corners count as one only where they are exactly equal.
inline MeshCheck check_mesh(std::span<const Facet> mesh) {
  std::map<std::tuple<double, double, double>, long> corners;
  std::map<std::pair<long, long>, int> edges;  // uses one way less uses the other way
  const auto number_of = [&](const Vec3& p) {
    const std::tuple key(p.x + 0.0, p.y + 0.0, p.z + 0.0);
    return corners.emplace(key, static_cast<long>(corners.size())).first->second;
  };
  MeshCheck check;
  for (const Facet& f : mesh) {
    const std::array ids{number_of(f.a), number_of(f.b), number_of(f.c)};
    for (std::size_t i = 0; i < 3; ++i) {
      const auto [from, to] = std::pair(ids[i], ids[(i + 1) % 3]);
      edges[std::minmax(from, to)] += from < to ? 1 : -1;
    }
    check.volume += dot(f.a, cross(f.b, f.c)) / 6;
    check.worst_normal = std::max(check.worst_normal, length(f.n - facet_normal(f.a, f.b, f.c)));
  }
  for (const auto& [edge, balance] : edges) check.open_edges += balance != 0;
  check.euler = static_cast<long>(corners.size()) - static_cast<long>(edges.size()) +
                static_cast<long>(mesh.size());
  return check;
}

/// Closed, facing outwards, and smaller than `volume` by no more than the part `slack` of it.
inline MeshCheck expect_solid(std::span<const Facet> mesh, double volume, double slack) {
  const MeshCheck check = check_mesh(mesh);
  EXPECT_EQ(check.open_edges, 0U);
  EXPECT_LT(check.worst_normal, 1e-6);
  EXPECT_LE(check.volume, volume * (1 + 1e-5));
  EXPECT_GE(check.volume, volume * (1 - slack));
  return check;
}

}  // namespace tooldb

#pragma once

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "geom/extrude.h"
#include "geom/revolve.h"
#include "geom/vector_math.h"

/// @file
/// Meshes for tests.

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

/// Every corner moved by up to `size` along each axis.
inline Mesh shaken(Mesh mesh, double size) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> u(-size, size);
  for (Facet& f : mesh) {
    for (Vec3* p : {&f.a, &f.b, &f.c}) *p = *p + Vec3{u(random), u(random), u(random)};
  }
  return mesh;
}

/// Facets that have nothing to do with each other, in a space of 40 x 40 x 80.
inline Mesh soup(std::size_t count, double size, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> u(-1, 1);
  Mesh mesh(count);
  for (Facet& f : mesh) {
    const Vec3 centre{20 * u(random), 20 * u(random), 40 * u(random)};
    for (Vec3* p : {&f.a, &f.b, &f.c}) *p = centre + size * Vec3{u(random), u(random), u(random)};
    f.n = facet_normal(f.a, f.b, f.c);
  }
  return mesh;
}

}  // namespace tooldb

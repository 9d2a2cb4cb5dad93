#include "geom/triangle_strips.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace tooldb {
namespace {

using Triangles = std::vector<IndexTriangle>;

// Each triangle begun at its smallest corner, in order; those without area left out.
Triangles sorted(Triangles triangles) {
  for (IndexTriangle& t : triangles)
    std::rotate(t.begin(), std::min_element(t.begin(), t.end()), t.end());
  std::erase_if(triangles,
                [](const auto& t) { return t[0] == t[1] || t[1] == t[2] || t[2] == t[0]; });
  std::ranges::sort(triangles);
  return triangles;
}

Triangles grid(std::uint32_t columns, std::uint32_t rows) {
  Triangles triangles;
  const std::uint32_t wide = columns + 1;
  for (std::uint32_t y = 0; y < rows; ++y) {
    for (std::uint32_t x = 0; x < columns; ++x) {
      const std::uint32_t a = y * wide + x;
      triangles.push_back({a, a + 1, a + wide + 1});
      triangles.push_back({a, a + wide + 1, a + wide});
    }
  }
  return triangles;
}

Triangles random_triangles() {
  std::mt19937 random(6);
  Triangles triangles(500);
  for (IndexTriangle& t : triangles) {
    for (std::uint32_t& corner : t) corner = static_cast<std::uint32_t>(random() % 30);
  }
  return triangles;
}

// Each with the most strips that it may take.
const std::pair<Triangles, std::size_t> kMeshes[] = {
    {grid(50, 1), 1},
    {grid(20, 20), 20},
    {{{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}}, 2},  // a tetrahedron
    {{{1, 1, 2}, {3, 4, 3}}, 0},                        // without area
    {random_triangles(), 500},
};
TEST(TriangleStrips, KeepEveryTriangleAndItsWinding) {
  for (const auto& [triangles, most_strips] : kMeshes) {
    const auto strips = make_strips(triangles);
    EXPECT_LE(strips.size(), most_strips) << triangles.size();
    EXPECT_EQ(sorted(triangles_of(strips)), sorted(triangles)) << triangles.size();
  }
}

TEST(TriangleStrips, ReadAsGraphicsDoes) {
  const std::vector<Strip> strips = {{0, 1, 2, 3, 3, 4, 5}, {8, 9}, {}};
  EXPECT_EQ(triangles_of(strips), (Triangles{{0, 1, 2}, {2, 1, 3}, {3, 4, 5}}));
}

}  // namespace
}  // namespace tooldb

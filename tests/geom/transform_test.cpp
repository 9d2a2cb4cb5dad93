#include "geom/transform.h"

#include <gtest/gtest.h>

#include "geom/euler_angles.h"
#include "tests/geom/mesh_check.h"

namespace tooldb {
namespace {

TEST(Transform, RigidInverseUndoesAPlacement) {
  const Vec3 p{0.5, -3, 8};
  for (const EulerAngles& angles : {EulerAngles{}, {90, 0, 0}, {30, -20, 110}, {0, 90, 45}}) {
    const Placement there = join_zyx(angles, {-5, 0.25, 1e3});
    const Placement back = rigid_inverse(there);
    EXPECT_LT(length(transform_point(back, transform_point(there, p)) - p), 1e-12);
    EXPECT_LT(length(transform_point(back * there, p) - p), 1e-12);
    EXPECT_NEAR(determinant(there), 1, 1e-15);
  }
}

TEST(Transform, APointMovesAndADirectionOnlyTurns) {
  const Placement quarter = join_zyx({90, 0, 0}, {10, 20, 30});
  EXPECT_EQ(transform_point(quarter, {1, 2, 3}), (Vec3{8, 21, 33}));
  EXPECT_EQ(transform_direction(quarter, {1, 2, 3}), (Vec3{-2, 1, 3}));
}

TEST(Transform, AMirroredMeshStillFacesOutwards) {
  const Vec3 o{0, 0, 0}, x{1, 0, 0}, y{0, 1, 0}, z{0, 0, 1};
  std::vector<Facet> tetrahedron = {{o, y, x, {}}, {o, x, z, {}}, {o, z, y, {}}, {x, y, z, {}}};
  Placement mirror = translation({3, 0, 0});
  mirror(0, 0) = -2;
  transform_mesh(tetrahedron, mirror);
  const MeshCheck check = check_mesh(tetrahedron);
  EXPECT_NEAR(check.volume, 2.0 / 6, 1e-15);
  EXPECT_EQ(check.open_edges, 0U);
  EXPECT_LT(check.worst_normal, 1e-15);
}

}  // namespace
}  // namespace tooldb

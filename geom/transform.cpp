#include "geom/transform.h"

#include <utility>

#include "geom/parallel.h"

namespace tooldb {
namespace {

constexpr std::size_t kFacetsPerTask = 4096;

double row_times(const Placement& placement, int row, const Vec3& v) {
  return placement(row, 0) * v.x + placement(row, 1) * v.y + placement(row, 2) * v.z;
}

}  // namespace

Vec3 transform_direction(const Placement& placement, const Vec3& d) {
  return {row_times(placement, 0, d), row_times(placement, 1, d), row_times(placement, 2, d)};
}

Vec3 transform_point(const Placement& placement, const Vec3& p) {
  return transform_direction(placement, p) + translation_of(placement);
}

Placement translation(const Vec3& offset) {
  Placement placement;
  placement(0, 3) = offset.x;
  placement(1, 3) = offset.y;
  placement(2, 3) = offset.z;
  return placement;
}

Vec3 translation_of(const Placement& placement) {
  return {placement(0, 3), placement(1, 3), placement(2, 3)};
}

double determinant(const Placement& placement) {
  const auto column = [&](int c) {
    return Vec3{placement(0, c), placement(1, c), placement(2, c)};
  };
  return dot(column(0), cross(column(1), column(2)));
}

Placement rigid_inverse(const Placement& placement) {
  Placement inverse;
  for (int row = 0; row < 3; ++row) {
    for (int col = 0; col < 3; ++col) inverse(row, col) = placement(col, row);
  }
  const Vec3 back = transform_direction(inverse, translation_of(placement));
  // 0 - x rather than -x: a placement without translation stays free of negative zeros.
  return translation({0 - back.x, 0 - back.y, 0 - back.z}) * inverse;
}

void transform_mesh(std::span<Facet> mesh, const Placement& placement) {
  const bool mirrors = determinant(placement) < 0;
  parallel_for(mesh.size(), kFacetsPerTask, [&](std::size_t begin, std::size_t end) {
    for (Facet& f : mesh.subspan(begin, end - begin)) {
      f.a = transform_point(placement, f.a);
      f.b = transform_point(placement, f.b);
      f.c = transform_point(placement, f.c);
      if (mirrors) std::swap(f.b, f.c);
      f.n = facet_normal(f.a, f.b, f.c);
    }
  });
}

}  // namespace tooldb

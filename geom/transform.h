#pragma once

#include <span>

#include "geom/vector_math.h"

/// @file
/// What a placement does to points, directions and meshes.

namespace tooldb {

using Placement = Transformation<double>;

Vec3 transform_point(const Placement& placement, const Vec3& p);
/// As a point, without the translation.
Vec3 transform_direction(const Placement& placement, const Vec3& d);

Placement translation(const Vec3& offset);
Vec3 translation_of(const Placement& placement);

/// Determinant of the 3x3 part; negative for a placement that mirrors.
double determinant(const Placement& placement);

/// The inverse of a placement that turns and moves without scaling or shearing: its 3x3 part
/// transposed. For any other placement the result is no inverse.
Placement rigid_inverse(const Placement& placement);

/// Places every facet. A mirroring placement swaps two corners, so that facets keep facing
/// outwards; the normals are computed anew.
void transform_mesh(std::span<Facet> mesh, const Placement& placement);

}  // namespace tooldb

#pragma once

#include <span>

#include "geom/vector_math.h"

namespace tooldb {

/// The outline of the body that a mesh sweeps when it turns about the Z axis: the largest distance
/// from the axis at each height, from the axis out, up and back to the axis. x is that distance, y
/// the height; a height without material is a return to the axis.
/// @param tolerance  the outline lies nowhere farther than this from the true one, and nowhere
///                   more than 0.3 of it inside; one that is not positive counts as 1e-3, one below
///                   a millionth of the mesh's size as that
/// @return empty when no triangle extends along Z; triangles that are not finite are left out
///
/// The distance along an edge is a branch of a hyperbola, convex, so that the largest distance over
/// a triangle lies on its edges and the chords of a branch lie above it: the outline is the upper
/// envelope of the chords of all edges.
Polyline silhouette(std::span<const Facet> mesh, double tolerance);

}  // namespace tooldb

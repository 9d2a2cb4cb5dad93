#pragma once

#include <vector>

#include "geom/vector_math.h"
#include "tooldb/item.h"

/// @file
/// The meshes of cutters, shanks, holders and model files.

namespace tooldb {

/// How the mesh of a body is made. Lengths in the item's unit.
struct BodyMesh {
  kinSceneManager* scene = nullptr;  ///< loads model files; null: the library's own
  double tolerance = 0.01;           ///< largest distance from the true surface, > 0
  double extension = 0;              ///< the outline is grown by this; negative: shrunk
  double start_deg = 0;              ///< of a section of a turned body, about its axis
  double span_deg = 360;             ///< of the same; 360: the whole body
};

/// Appends the item's own triangles in the item's frame.
/// @return false, and nothing appended, for an item that is hidden, has no shape, or whose outline
///         or model file is refused
bool append_body_mesh(tdbItem& item, const BodyMesh& how, std::vector<Facet>& mesh);

/// Moves the facets from `first` on; the identity leaves their very numbers.
void place_mesh(std::vector<Facet>& mesh, std::size_t first,
                const Transformation<double>& position);
/// The placement of the outline's frame, or of the model's, in the item's.
Transformation<double> shape_placement(const tdbItem& item);

}  // namespace tooldb

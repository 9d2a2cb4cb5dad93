#pragma once

#include <optional>
#include <vector>

#include "geom/vector_math.h"
#include "tooldb/item.h"

/// @file
/// The shapes that items take from model files.

namespace tooldb {

/// The triangles of the item's model file in the item's frame, in millimetres, facing outwards;
/// those without area are left out.
/// @param scene  loads the file; null: the library's own scene manager
/// @return nothing when no file is set or it cannot be loaded
std::optional<std::vector<Facet>> model_triangles(const tdbItem& item, kinSceneManager* scene);

}  // namespace tooldb

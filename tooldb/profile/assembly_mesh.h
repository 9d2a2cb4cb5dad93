#pragma once

#include <vector>

#include "tooldb/profile/body_mesh.h"
#include "tooldb/tool.h"

/// @file
/// Meshes of whole tools and components.

namespace tooldb {

/// Appends the triangles of `root` and of all below it in the frame of `root`.
/// @return false, and nothing appended, when none of them has a shape
bool append_assembly_mesh(tdbItem& root, const BodyMesh& how, std::vector<Facet>& mesh);

/// The same for a tool whose bodies are cut open as its section view says: those that turn about
/// the tool's axis; others stay whole.
bool append_section_mesh(tdbTool& tool, const BodyMesh& how, std::vector<Facet>& mesh);

}  // namespace tooldb

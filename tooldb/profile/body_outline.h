#pragma once

#include "tooldb/profile/draft.h"

/// @file
/// The outline that an item has: built from its parameters, or read from its contour text.

namespace tooldb {

/// A cutter, shank or holder. Others have no outline.
bool is_body(const tdbItem& item);
/// Whether the shape comes from a model file.
bool is_model(const tdbItem& item);
/// The outline of a body in its own frame and unit; of a model, a refusal.
Outline body_outline(const tdbItem& item);
/// The parameters that the outline of a body is made of; none for contour text and models.
std::vector<tdbDimension> body_dimensions(const tdbItem& item);
/// Whether the outline is the edge of a flat body, and not the half-section of a turned one.
bool is_extruded(const tdbItem& item);

}  // namespace tooldb

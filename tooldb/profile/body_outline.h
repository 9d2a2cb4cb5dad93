#pragma once

#include "tooldb/profile/draft.h"

/// @file
/// The outline that an item has: built from its parameters, or read from its contour text.

namespace tooldb {

enum class BodyClass { kNone, kCutter, kShank, kHolder };

/// The kind of thing that an item is; what is no cutter, shank or holder has no outline.
BodyClass body_class(const tdbItem& item);

/// A type code of one class of bodies.
struct BodyCode {
  BodyClass body;
  int code;

  friend bool operator==(const BodyCode&, const BodyCode&) = default;
};
BodyCode body_code(const tdbItem& item);

/// Whether the shape comes from a model file.
bool is_model(const tdbItem& item);
/// The outline of a body in its own frame and unit; of a model, a refusal.
Outline body_outline(const tdbItem& item);
/// Builds the outline from the parameters and stores it as contour XML; for a body that carries
/// its own text nothing is built.
/// @return false when the outline is refused, and the stored text stays, or the own text is blank
bool build_outline(tdbItem& item);
/// The parameters that the outline of a body is made of; none for contour text and models.
std::vector<tdbDimension> body_dimensions(const tdbItem& item);
/// The least and the largest coordinates of an outline.
struct Bounds {
  Vec2 low;
  Vec2 high;
};
/// Those of `outline`, which has segments.
Bounds bounds_of(const Outline& outline);
/// Whether the outline is the edge of a flat body, and not the half-section of a turned one.
bool is_extruded(const tdbItem& item);

}  // namespace tooldb

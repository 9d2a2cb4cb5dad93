#pragma once

#include <string>
#include <vector>

#include "apps/bodies.h"

class tdbTool;
struct tdbDimension;

/// @file
/// What is dimensioned on the drawing of an upright tool, in the tool's frame and unit.

namespace tooldb {

/// A diameter, and the heights at which the body has it.
struct DiameterMeasure {
  double radius;
  Extent heights;
  std::string meaning;
  bool is_below;  ///< of the cutting end: it is dimensioned below the tip
  Body::Role role = Body::Role::kCutter;
};

/// A length along the axis, from the tip or the programmed point.
struct LengthMeasure {
  Extent span;
  std::string meaning;
};

/// A radius or an angle, and the point of the cutter that it belongs to.
struct NoteMeasure {
  Point2d<double> at;
  std::string text;
};

struct Measures {
  std::vector<LengthMeasure> lengths;  ///< shortest first; equal ones are one
  std::vector<DiameterMeasure> diameters;
  std::vector<NoteMeasure> notes;  ///< of the cutters
  std::string origin;              ///< what the plane of the tool's origin is; empty: not shown
};

Measures measures_of(const std::vector<Body>& bodies, tdbTool& tool);

/// A dimension with its value for a person: "point angle 118° (total)". Empty for one that has no
/// value, or is 0.
std::string dimension_text(const tdbDimension& dimension);
/// The value alone: "118° (total)".
std::string dimension_value(const tdbDimension& dimension);

}  // namespace tooldb

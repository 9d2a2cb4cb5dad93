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

std::vector<DiameterMeasure> diameters_of(const std::vector<Body>& bodies);
/// Shortest first; equal ones are one.
std::vector<LengthMeasure> lengths_of(const std::vector<Body>& bodies, tdbTool& tool);
std::vector<NoteMeasure> notes_of(const std::vector<Body>& bodies);

/// A dimension with its value for a person: "point angle 118° (total)". Empty for one that has no
/// value, or is 0.
std::string dimension_text(const tdbDimension& dimension);
/// The value alone: "118° (total)".
std::string dimension_value(const tdbDimension& dimension);

}  // namespace tooldb

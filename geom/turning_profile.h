#pragma once

#include <vector>

#include "geom/loop_builder.h"
#include "geom/vector_math.h"

namespace tooldb {

/// How a turning section is computed. Lengths carry the mesh's unit.
struct TurningSection {
  double grid = 0.01;        ///< ends of section pieces nearer than this belong together
  double tolerance = 0.002;  ///< of the thinning out of each finished contour
  double max_gap = 1;        ///< widest gap of an open contour that is closed
  int max_steps = 5000;      ///< largest number of such gaps
  int passes = 2;            ///< 1: just below the plane; 2: when that is empty, also just above
  bool unite = true;         ///< all contours together, as one region
  bool holes = false;        ///< keep inner contours
};

/// The section of a body that does not spin, a turning tool's, with the turning plane y = 0.
class VexaTurningProfile {
 public:
  /// @param weld  corners of the mesh nearer than this to the plane are put on it
  explicit VexaTurningProfile(double weld) : weld_(weld) {}

  /// Adds facets; those without a normal (zero) or with a corner that is not finite are left out.
  void Add(const std::vector<Facet>& facets);

  /// Appends the section's contours in (x, z): closed, the first point repeated, counter-clockwise
  /// (inner ones clockwise), the largest first. A corner on the plane counts as above it in the
  /// first pass and as below it in the second, so that no facet lies in the plane: a face in the
  /// plane is the section of the body below it. Contours narrower than the grid are left out.
  /// @return false, and nothing appended, when the plane misses the body or no contour closes
  bool Compute(std::vector<Polyline>& contours, const TurningSection& how) const;

 private:
  double weld_;
  std::vector<Facet> facets_;
};

}  // namespace tooldb

#include "tooldb/placement.h"

#include "geom/euler_angles.h"

tdbAngles tdbGetAngles(const Transformation<double>& placement) {
  const auto [z, y, x] = tooldb::split_zyx(placement);
  return {z, y, x};
}

Transformation<double> tdbMakePlacement(const Vec3d<double>& position, const tdbAngles& angles) {
  return tooldb::join_zyx({angles.z, angles.y, angles.x}, position);
}

#pragma once

#include "tooldb/export.h"
#include "tooldb/geometry.h"

/// A rotation about Z, then about the turned Y, then about the twice turned X, in degrees: the form
/// in which files hold it.
struct tdbAngles {
  double z = 0;
  double y = 0;
  double x = 0;
};

/// The angles of a placement's rotation; Y is in -90..90.
TDB_EXPORT tdbAngles tdbGetAngles(const Transformation<double>& placement);

/// The placement of a position and a rotation; multiples of 90 degrees come out exact.
TDB_EXPORT Transformation<double> tdbMakePlacement(const Vec3d<double>& position,
                                                   const tdbAngles& angles);

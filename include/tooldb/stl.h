#pragma once

#include <string>
#include <vector>

#include "tooldb/export.h"
#include "tooldb/geometry.h"

/// @file
/// Meshes as STL files. STL knows no unit.

/// The text form, each number in the fewest digits that read back as the same double.
/// @param name  of the solid; line ends in it become blanks
/// @return empty when memory runs out
TDB_EXPORT std::string tdbStlText(const std::vector<Triangle<double>>& triangles,
                                  const std::string& name);

/// The binary form, numbers rounded to float.
/// @return empty when memory runs out, and for more than 2^32 - 1 triangles
TDB_EXPORT std::string tdbStlBinary(const std::vector<Triangle<double>>& triangles);

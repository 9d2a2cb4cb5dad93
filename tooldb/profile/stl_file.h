#pragma once

#include <string>
#include <vector>

#include "geom/vector_math.h"

namespace tooldb {

/// The mesh of an STL file, text or binary; raises `tdbError` with the path and the reason.
std::vector<Facet> read_stl_file(const std::string& path);

}  // namespace tooldb

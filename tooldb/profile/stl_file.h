#pragma once
#include <optional>
#include <string>
#include <vector>

#include "geom/vector_math.h"
namespace tooldb {
std::optional<std::vector<Facet>> read_stl_file(const std::string& path);
}  // namespace tooldb

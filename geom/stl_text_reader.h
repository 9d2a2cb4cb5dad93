#pragma once

#include <optional>
#include <string>
#include <vector>

#include "geom/byte_source.h"
#include "geom/vector_math.h"

namespace tooldb {

/// Whether a file begins as the text form does; no binary file does, even when its header says
/// "solid".
bool looks_like_stl_text(ByteSource& source);

/// Reads the text form of STL; see `read_stl`.
std::optional<std::vector<Facet>> read_stl_text(ByteSource& source, std::string& error);

}  // namespace tooldb

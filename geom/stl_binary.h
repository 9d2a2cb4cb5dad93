#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "geom/byte_source.h"
#include "geom/vector_math.h"

/// @file
/// The binary form of STL: 80 bytes of header, the number of facets in 4, then 50 for each facet:
/// normal and three corners as floats, and two bytes without a meaning. Low bytes come first.

namespace tooldb {

/// What the header says of a file, and what its size has room for.
struct StlLayout {
  bool has_count = false;     ///< long enough for a header
  std::uint64_t counted = 0;  ///< the count in the header
  std::uint64_t whole = 0;    ///< whole facets after it
  std::uint64_t spare = 0;    ///< bytes after the whole facets

  /// Whether the file has the very size that its count asks for.
  bool Fits() const { return has_count && counted == whole && spare == 0; }
};
StlLayout stl_layout(ByteSource& source);

/// Reads the binary form; see `read_stl`.
std::optional<std::vector<Facet>> read_stl_binary(ByteSource& source, std::string& error);

}  // namespace tooldb

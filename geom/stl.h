#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "geom/byte_source.h"
#include "geom/vector_math.h"

/// @file
/// Meshes as STL, the text and the binary form. STL knows no unit.

namespace tooldb {

/// Reads either form. Normals are computed from the corners; facets without area are left out.
///
/// Binary: what begins with anything but "solid" or has the very size that its count asks for. A
/// count that does not fit the size gives way to the size when that is a whole number of facets;
/// bytes after the last counted facet are not looked at.
/// Text: words in either case, separated by any blanks and line ends; several solids are one mesh,
/// and the last "endsolid" may be missing.
///
/// @param error  filled on failure: what is wrong, and in which line or at which byte
/// @return nothing for a file that is neither form, that ends within a facet, or that has a
///         corner that is no finite number
std::optional<std::vector<Facet>> read_stl(ByteSource& source, std::string& error);

/// The text form, each number in the fewest digits that read back as the same double.
/// @param name  of the solid; line ends in it become blanks
std::string stl_text(std::span<const Facet> mesh, std::string_view name);

/// The binary form. Numbers are rounded to float; at most 2^32 - 1 facets.
std::string stl_binary(std::span<const Facet> mesh);

}  // namespace tooldb

#pragma once

#include <cstddef>
#include <vector>

#include "geom/vector_math.h"

namespace tooldb {

/// Uses the memory that a vector has in reserve for its next `count` elements a first time, on all
/// cores. The first use of fresh memory costs the system more than filling it does, and the vector
/// itself would make it on one core alone. The vector does not change.
void touch_spare(std::vector<Facet>& facets, std::size_t count);

}  // namespace tooldb

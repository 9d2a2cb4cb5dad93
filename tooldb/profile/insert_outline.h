#pragma once

#include "tooldb/profile/draft.h"

/// @file
/// Turning inserts: ISO 1832 shapes, sized as in ISO 13399.

namespace tooldb {

/// The outline of an insert: closed and counter-clockwise, the cutting corner down, its nose
/// touching (0, 0); of the centre (shape 25) an open one.
Outline insert_outline(const tdbInsertGeometry& insert);

/// `insert` with every dimension that is not given derived from the others.
tdbInsertGeometry complete_insert(tdbInsertGeometry insert);

/// The shape, 17 to 25, of a cutter that is an insert: that of the cutting tool around it, else
/// that of its INSERT_SHAPE; 0 for an unknown letter there.
int insert_shape(const tdbItem& cutter);

}  // namespace tooldb

#pragma once

#include "tooldb/cutting_conditions.h"
#include "tooldb/xml/element.h"

namespace tooldb {

/// Fill conditions from a CUTCOND element. What it does not mention stays; names that are not
/// known are skipped; text that is no number is 0; a tolerance out of range becomes its default.
void read_conditions(const Element& element, tdbCutCond& conditions);
void read_conditions(const Element& element, tdbTurningCutCond& conditions);

}  // namespace tooldb

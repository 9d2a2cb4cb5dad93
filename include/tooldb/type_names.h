#pragma once

#include <string>
#include <vector>

#include "tooldb/export.h"

class tdbItem;

/// @file
/// Type codes of items as texts. What a code means depends on the class of the item: a tool, a
/// cutting tool, a cutter, a shank, a holder or a fixed link. Other classes have no names.

/// The name that the item's type code is written with in files; empty for a class without names.
TDB_EXPORT std::string tdbGetTypeName(const tdbItem& item);

/// The type code of a name, spelt exactly so, for items of this item's class; -1 if there is none.
TDB_EXPORT int tdbGetTypeByName(const tdbItem& item, const std::string& name);

/// Every name that is written for items of this item's class, in the order of the codes.
TDB_EXPORT std::vector<std::string> tdbGetTypeNames(const tdbItem& item);

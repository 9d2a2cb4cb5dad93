#pragma once

#include <string>

#include "tooldb/composite_item.h"

/// @file
/// The property behind every reader's fuzz target: what was read, written and read again writes
/// the same bytes.

namespace fuzz {

/// True when a text of the tree holds a character that the files carry unescaped: such a tree is
/// not expected to come back.
bool carries_markup(tdbCompositeItem& root);

/// True when a cutting condition is 0 that reads as its default once it is written as "0".
bool carries_lost_zero(tdbCompositeItem& root);

/// Each stops the process, and so the fuzzer, with what it found.
void expect(bool holds, const char* property);
void expect_same(const std::string& first, const std::string& second);

}  // namespace fuzz

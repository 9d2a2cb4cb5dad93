#pragma once

#include "apps/checks/finding.h"

/// @file
/// What `check --repair` does. No file is ever deleted or overwritten, and no tool is changed.

namespace tooldb {

/// Name of the folder, inside a library, of the files that cannot be mended.
inline constexpr const char* kLostAndFound = "lost+found";

/// Gives files the names that their codes are written as, where these are free, and moves the files
/// that cannot be read to lost+found, each beside a text with the reason. Says in each finding what
/// was done; raises nothing: a finding that stays as it is has no such words.
void repair(Findings& findings);

}  // namespace tooldb

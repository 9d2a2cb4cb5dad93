#pragma once

#include <string>
#include <vector>

#include "apps/checks/finding.h"

namespace tooldb {

/// The names of the files of one kind in a folder: each is what its code is written as, no two mean
/// one code, and other systems can have them.
void check_file_names(const std::string& folder, const std::vector<std::string>& names,
                      Findings& findings);

}  // namespace tooldb

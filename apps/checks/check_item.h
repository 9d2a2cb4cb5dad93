#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "apps/bodies.h"
#include "apps/checks/finding.h"

class tdbCompositeItem;
class tdbTool;

namespace tooldb {

/// A tool or component that was read, and its file.
struct CheckedFile {
  std::string path;
  std::string bytes;
};

/// What a tool or component holds: texts, parameter names, references, model files, outlines.
/// @param bodies  its bodies at their fine tolerance
void check_contents(tdbCompositeItem& root, const std::vector<Body>& bodies,
                    const CheckedFile& file, Findings& findings);

/// How the bodies of a tool fit together; its placements must be up to date.
/// @param bodies  its bodies at their fine tolerance
void check_assembly(tdbTool& tool, const std::vector<Body>& bodies, const CheckedFile& file,
                    Findings& findings);

}  // namespace tooldb

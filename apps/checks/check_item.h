#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/bodies.h"
#include "apps/checks/finding.h"

class tdbCompositeItem;
class tdbTool;

namespace tooldb {

/// The file of a tool or component that was read. Its text is read again when a finding asks where
/// something stands.
class CheckedFile {
 public:
  explicit CheckedFile(std::string path) : path_(std::move(path)) {}

  const std::string& Path() const { return path_; }
  /// The line, counted from 1, on which a text stands first; 0 when it is not there. Raises
  /// `Failure` when the file can no longer be read.
  std::size_t LineOf(std::string_view text) const;

 private:
  std::string path_;
  mutable std::optional<std::string> bytes_;
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

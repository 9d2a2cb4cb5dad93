#pragma once

#include <string>
#include <vector>

#include "filters/import.h"

/// @file
/// The files that a command was given to take tools from.

namespace tooldb {

class ToolFolder;

/// What a file is, as far as can be told before it is read.
enum class SourceKind {
  kTool,       ///< one tool of this system
  kComponent,  ///< one component of this system
  kDocument,   ///< an export of this system
  kForeign,    ///< another program's
  kUnknown,    ///< no format fits
};

struct SourceFile {
  std::string path;
  bool named = true;  ///< false: found in a folder that was named
  SourceKind kind = SourceKind::kUnknown;
  /// What was read: components at first, then with the tools.
  ImportResult result;
};

/// The files that `paths` name; folders stand for the files in them and below, in byte order.
/// A path where nothing is becomes a file without entries and a note of the kind kFailed.
std::vector<SourceFile> find_sources(const std::vector<std::string>& paths);

/// Reads the whole of another program's file, and the components of this system's.
void read_components(SourceFile& source, ToolFolder& folder);

/// Reads the tools of this system's files, resolving components through the folder.
void read_tools(SourceFile& source, ToolFolder& folder);

/// Empties files that another one was read with, so that nothing is taken twice.
void drop_siblings(std::vector<SourceFile>& sources);

}  // namespace tooldb

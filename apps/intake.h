#pragma once

#include <string>
#include <vector>

#include "apps/source_files.h"

/// @file
/// Taking tools and components from files into a folder.

namespace tooldb {

class Console;
class ToolFolder;

/// What became of one entry.
enum class Outcome {
  kNew,
  kSame,
  kChanged,
  kUpdated,
  kRefused,
  kAbsent,  ///< the file names another file for it, which is not there
};

/// One entry of the report.
struct IntakeLine {
  Outcome outcome;
  bool is_component;
  std::string code;         ///< that it has in the folder
  std::string description;  ///< of the tool
  std::string source;       ///< as the file names it
  std::string reason;       ///< why it was refused, or has another code
  std::vector<ImportNote> notes;
};

/// What became of one file.
struct IntakeFile {
  std::string path;
  std::string format;  ///< empty when none fits
  bool is_refused = false;
  std::vector<IntakeLine> lines;
  std::vector<std::string> missing;  ///< codes that came from this file before and are gone from it
  std::vector<ImportNote> notes;
};

/// How entries are treated that the folder has already, and texts that files cannot hold.
struct IntakePolicy {
  bool update = false;        ///< changed tools are replaced
  bool own_only = false;      ///< only files of this system; a code that is there is an error
  bool dry_run = false;       ///< nothing is written
  bool rewrite_texts = true;  ///< by their full-width forms; false: such tools are refused
};

/// Takes in everything that the sources hold; one that cannot be taken never stops the others.
std::vector<IntakeFile> take_in(std::vector<SourceFile> sources, ToolFolder& folder,
                                const IntakePolicy& policy, Console& console);

}  // namespace tooldb

#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

/// @file
/// Import of other programs' tool files. A file gives entries: tools and library components, each
/// with a report of what became of its values. A bad entry never stops the others, and every entry
/// of a file is accounted for. Nothing here touches the disk, and no function throws.

namespace tooldb {

/// What became of a value, an entry or a file.
enum class NoteKind {
  kMapped,            ///< has its place in the model
  kApproximated,      ///< has a place, but not as it stood, or is a guess; the text says why
  kKept,              ///< has no place in the model; kept as a parameter of the tool
  kNotRepresentable,  ///< cannot be held at all
  kFailed,            ///< could not be read
  kAbsent,            ///< lies in a file that is not there
};

/// "mapped", "approximated", "kept", "not representable", "failed", "absent".
std::string_view note_kind_name(NoteKind kind);

/// One line of a report.
struct ImportNote {
  NoteKind kind = NoteKind::kMapped;
  std::string text;
};

/// What one entry of a file became: a tool, a component, or neither; then the notes tell why.
struct ImportEntry {
  std::string source;  ///< names the entry to a person: its file, and its name or position there
  std::string guid;    ///< identity that the file gives the entry; empty without one
  std::unique_ptr<tdbTool> tool;
  /// With its component mark set, its members marked too. Tools of the same file use it by code;
  /// components come before the tools that use them.
  std::unique_ptr<tdbToolComponent> component;
  std::vector<ImportNote> notes;
};

/// All that one file gave.
struct ImportResult {
  std::string_view format;           ///< name of the format; empty when no format fits
  std::vector<ImportEntry> entries;  ///< codes are unique among the tools, and the components
  std::vector<ImportNote> notes;     ///< about the file as a whole
  /// Paths of the files that were read beside it, relative to its folder, so that the import of a
  /// whole folder need not read them again.
  std::vector<std::string> siblings;
};

/// Gives the bytes of a file whose path is relative to the folder of the imported one; nothing
/// when there is no such file. Folders are separated by '/'.
using SiblingReader = std::function<std::optional<std::string>(const std::string& path)>;

/// One format that can be imported.
struct ImportFormat {
  std::string_view name;                         ///< short, for a command line: "freecad-bit"
  std::span<const std::string_view> extensions;  ///< lower case, with the dot
  /// True when the bytes look like this format, whatever the file is called.
  bool (*fits)(std::string_view bytes);
  /// Appends to the result. May throw.
  void (*read)(std::string_view bytes, const std::string& file_name, const SiblingReader& siblings,
               ImportResult& result);
};

/// The format of a file: by extension and content, else by content alone, else by extension alone;
/// null when none fits.
const ImportFormat* find_import_format(std::string_view file_name, std::string_view bytes);

/// Reads a file.
/// @param file_name  as a person would name it; only used for the format and in texts
/// @param siblings   may be empty: then libraries report every file that they refer to as missing
/// @return always something: a file of no known format, or one that cannot be read, has no entries
///         and a note of the kind kFailed
ImportResult import_tools(std::string_view bytes, const std::string& file_name,
                          const SiblingReader& siblings);

}  // namespace tooldb

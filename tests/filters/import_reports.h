#pragma once

#include <string>
#include <string_view>

#include "filters/import.h"
#include "tooldb/tool_parts.h"

namespace tooldb {

/// The bytes of a file of the sample sources; fails the test when it cannot be read.
std::string sample_source(const std::string& path);

/// Imports a file of the sample sources, with the files beside it.
ImportResult import_sample(const std::string& path);

/// Imports a text with no files beside it, after `check_import`.
ImportResult import_text(std::string_view text, const std::string& file_name = "a-tool");

/// The only entry of a file.
ImportEntry only_entry(ImportResult result);

/// True when the report has a note of that kind that holds `text`.
bool has_note(const ImportEntry& entry, NoteKind kind, std::string_view text);

/// The first cutting tool of a tool; null without one.
tdbCuttingTool* cutting_tool(const ImportEntry& entry);

/// The cutter's dimensions as "NAME=value NAME=value", in the order of the names.
std::string dimensions(const tdbItem& item);

/// The tool in one line: unit, type, diameter and length; its first cutting tool's type and
/// dimensions; the length of its shank.
std::string summary(const ImportEntry& entry);

/// What must hold for every import, whatever the input: each entry gives something or says why
/// not, and what it gives can be stored and drawn.
void check_import(const ImportResult& result);

}  // namespace tooldb

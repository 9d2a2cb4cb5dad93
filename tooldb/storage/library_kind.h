#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tooldb/composite_item.h"
#include "tooldb/error.h"
#include "tooldb/xml/part_reading.h"

class tdbToolComponentsDB;

/// @file
/// What sets a library of tools and a library of components apart: one table each.

namespace tooldb {

using LibraryItem = tdbCompositeItem;
using LibraryItems = std::vector<std::unique_ptr<LibraryItem>>;

/// A text of the log, followed by what the operation works on unless it stands alone. An operation
/// with an empty text is not logged.
struct LogText {
  std::string_view text;
  bool stands_alone = false;
};

/// What the reader of an export resolves paths and references with; borrowed for the call.
struct ExportContext {
  const std::vector<std::string>& search_paths;
  tdbToolComponentsDB* components;
};

struct LibraryKind {
  std::string_view extension;

  LogText read;
  LogText read_one;
  LogText reload;
  LogText import_file;
  LogText import_xml;
  LogText export_to;
  LogText add;
  LogText remove;
  LogText update;
  LogText remove_all_with_files;

  /// The reading of one stored file.
  std::unique_ptr<FileReading> (*reading_of)(std::string path);
  /// Appends what an export holds, and every error met.
  void (*read_export_file)(const char* path, const ExportContext& context, LibraryItems& items,
                           std::vector<tdbError>& errors);
  void (*read_export_text)(const char* xml, const ExportContext& context, LibraryItems& items,
                           std::vector<tdbError>& errors);
  /// Makes an item what the items of the library are, before it is written or listed.
  void (*prepare)(LibraryItem& item);
};

extern const LibraryKind kToolLibrary;
extern const LibraryKind kComponentLibrary;

}  // namespace tooldb

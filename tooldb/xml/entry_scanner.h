#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/xml/markup_scanner.h"

/// @file
/// The entries of a document, cut out of its text so that each can be parsed alone.

namespace tooldb {

/// The content of an element as it stands in the text, where the parser would change it: a
/// profile, white space alone, carriage returns.
struct RawContent {
  std::size_t element;  ///< number of the element in its entry, in the order of the start tags
  std::string_view text;
};

/// A top-level element, or one directly below the root of an export.
struct Entry {
  std::string name;       ///< in upper case
  std::string_view text;  ///< the element with its tags; borrowed from the document
  int line = 1;           ///< of the document, where the element begins
  bool in_root = false;   ///< it stands in the root element of an export
  std::vector<RawContent> raw;
};

/// What follows in a document: nothing, an entry, or what is wrong with it.
using ScannedEntry = std::variant<std::monostate, Entry, tdbError>;

/// Finds the entries of a document one by one. Elements may be nested 90 deep. An entry that is
/// broken is refused alone: the search goes on at the next start tag of an entry.
class EntryScanner {
 public:
  /// @param document  UTF-8 without zero bytes; borrowed
  /// @param wanted    the upper-case name of the entries sought; behind a broken entry the next one
  ///                  is told by this name and by having no parent
  EntryScanner(std::string_view document, std::string_view wanted);

  /// The next entry, of whatever name; nothing at the end. A broken one is an error, code 1, that
  /// names the line; the next call goes on behind the fault.
  ScannedEntry Scan();
  /// The same; raises the error.
  std::optional<Entry> Next();

  /// True once the root element of an export has been met.
  bool HasRoot() const { return has_root_; }

 private:
  using Reading = std::variant<std::monostate, Entry, MarkupError>;
  Reading ReadNext();
  Reading ReadEntry(const Tag& start);
  void SkipBrokenEntry(const MarkupError& fault);
  bool BeginsEntry(const Tag& tag) const;
  int LineAt(std::size_t offset);

  std::string_view document_;
  std::string_view wanted_;
  MarkupScanner scanner_;
  bool has_root_ = false;
  bool in_root_ = false;
  bool ended_ = false;
  std::size_t counted_to_ = 0;  // LineAt has counted the lines up to here
  int lines_ = 1;
};

}  // namespace tooldb

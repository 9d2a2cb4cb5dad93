#pragma once

#include <tinyxml2.h>

#include <optional>
#include <string>
#include <string_view>

#include "tooldb/geometry.h"
#include "tooldb/xml/entry_scanner.h"

/// @file
/// Elements of a parsed entry: their attributes and texts.

namespace tooldb {

using Element = tinyxml2::XMLElement;

/// One entry of a document, parsed. Borrows the entry and its document.
class ParsedEntry {
 public:
  /// Raises `tdbError`, code 1, when the parser refuses the text.
  explicit ParsedEntry(Entry& entry);

  const Element& Root() const { return *document_.RootElement(); }
  /// Line of the whole document in which an element begins.
  int LineOf(const Element& element) const { return first_line_ + element.GetLineNum() - 1; }
  /// "line 12: ", for a message about an element.
  std::string Where(const Element& element) const;

 private:
  void MarkRawContents(Entry& entry);

  // Spaces around a text are part of it.
  tinyxml2::XMLDocument document_{true, tinyxml2::PRESERVE_WHITESPACE};
  int first_line_;
};

/// The name in upper case: older files spell some of them otherwise.
std::string upper_name(const Element& element);

/// The text of an element: everything in it that is no markup. A profile's is its content as it
/// stands in the document, tags and all.
std::string text_of(const Element& element);

/// An attribute's value, borrowed from the element; nothing when it is missing.
std::optional<std::string_view> find_attribute(const Element& element, std::string_view name);
/// The same; empty when it is missing.
std::string_view attribute(const Element& element, std::string_view name);
bool has_attribute(const Element& element, std::string_view name);

/// True for the text "TRUE" and no other.
bool is_true(std::string_view text);
/// The number that an attribute's value begins with; `missing` when there is no such attribute.
double number(const Element& element, std::string_view name, double missing = 0);
int integer(const Element& element, std::string_view name, int missing = 0);

/// A name as items carry it: without line ends and without blanks around it.
std::string clean_name(std::string_view text);

/// Three numbers from a text; what is missing is 0.
Vec3d<double> three_numbers(std::string_view text);

}  // namespace tooldb

#pragma once

#include <string>
#include <string_view>

#include "geom/number_text.h"

/// @file
/// Pieces of markup, appended to one string. Texts go in as they stand, without escaping.

namespace tooldb {

/// A number as "%g" prints it, and as "%f" does.
struct General {
  double value;
};
struct Fixed {
  double value;
};

inline void append_one(std::string& out, std::string_view text) { out.append(text); }
inline void append_one(std::string& out, char c) { out.push_back(c); }
inline void append_one(std::string& out, int value) { append_integer(out, value); }
inline void append_one(std::string& out, General number) { append_general(out, number.value); }
inline void append_one(std::string& out, Fixed number) { append_fixed(out, number.value); }

/// A blank, then name="value".
template <class Value>
struct Attribute {
  std::string_view name;
  Value value;
};
template <class Value>
Attribute(std::string_view, Value) -> Attribute<Value>;
Attribute(std::string_view, const std::string&)->Attribute<std::string_view>;
Attribute(std::string_view, const char*)->Attribute<std::string_view>;

template <class Value>
void append_one(std::string& out, const Attribute<Value>& attribute) {
  out.push_back(' ');
  out.append(attribute.name);
  out.append("=\"");
  append_one(out, attribute.value);
  out.push_back('"');
}

template <class... Pieces>
void append(std::string& out, const Pieces&... pieces) {
  (append_one(out, pieces), ...);
}

/// <name>value</name>, without a line break.
template <class Value>
void append_element(std::string& out, std::string_view name, const Value& value) {
  append(out, '<', name, '>', value, "</", name, '>');
}

/// The same, and a line break.
template <class Value>
void append_line(std::string& out, std::string_view name, const Value& value) {
  append_element(out, name, value);
  out.push_back('\n');
}

}  // namespace tooldb

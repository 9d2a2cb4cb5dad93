#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>

/// @file
/// Reading JSON whose fields may be missing or of any kind.

namespace tooldb {

using Json = nlohmann::json;

/// Parses a document; a byte-order mark is skipped.
/// @param problem  filled when the answer is nothing: what is wrong and where; pages of a web site
///                 are recognised as such
std::optional<Json> parse_json(std::string_view bytes, std::string& problem);

/// A scalar as text: a string as it stands, the shortest form of a number, "true", "false", empty
/// for null; an object or an array as JSON.
std::string json_text(const Json& value);

/// Calls `keep(name, text)` for every scalar below `value`, itself included; the names are joined
/// with points behind `prefix`, elements of arrays are numbered from 0.
void flatten_json(const std::string& prefix, const Json& value,
                  const std::function<void(const std::string&, std::string_view)>& keep);

/// An object's fields, and which of them have been read. The object must outlive it.
class JsonFields {
 public:
  /// Anything but an object counts as one without fields.
  explicit JsonFields(const Json& object);

  bool IsObject() const { return is_object_; }
  bool Has(const std::string& key) const { return object_->contains(key); }
  /// A number, or a text that is one; nothing, and the field counts as unread, for other kinds.
  std::optional<double> Number(const std::string& key);
  /// A text, trimmed, or a number as text; empty, and the field counts as unread, for other kinds.
  std::string Text(const std::string& key);
  std::optional<bool> Flag(const std::string& key);
  /// The field, counted as read; null when it is missing.
  const Json* Read(const std::string& key);
  /// Counts a field as read.
  void Skip(const std::string& key) { read_.insert(key); }
  /// Counts a field as unread, because its value was of no use.
  void GiveBack(const std::string& key) { read_.erase(key); }

  void KeepUnread(const std::string& prefix,
                  const std::function<void(const std::string&, std::string_view)>& keep) const;

 private:
  const Json* Find(const std::string& key) const;

  const Json* object_;
  bool is_object_;
  std::set<std::string> read_;
};

}  // namespace tooldb

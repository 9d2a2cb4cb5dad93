#include "filters/json_fields.h"

#include <algorithm>
#include <exception>

#include "filters/plain_text.h"
#include "filters/quantity.h"

namespace tooldb {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
/// Deeper than any known file, and shallow enough for walks that recurse.
constexpr int kMaxDepth = 64;

const Json& empty_object() {
  static const Json kEmpty = Json::object();
  return kEmpty;
}

bool is_web_page(std::string_view bytes) {
  const std::string start = lower_case(at_most(trimmed_text(bytes), 16));
  return start.starts_with("<!doctype html") || start.starts_with("<html") ||
         start.starts_with("<!--") || start.starts_with("<head");
}

// How deep brackets stand in brackets. The parser could tell it in a callback, but takes time with
// the square of a list's length then.
int nesting_depth(std::string_view bytes) {
  int depth = 0;
  int deepest = 0;
  bool in_text = false;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (in_text && c == '\\') {
      ++i;
    } else if (c == '"') {
      in_text = !in_text;
    } else if (!in_text && (c == '[' || c == '{')) {
      deepest = std::max(deepest, ++depth);
    } else if (!in_text && (c == ']' || c == '}')) {
      --depth;
    }
  }
  return deepest;
}

}  // namespace

std::optional<Json> parse_json(std::string_view bytes, std::string& problem) {
  if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
  if (trimmed_text(bytes).empty()) {
    problem = "the file is empty";
    return std::nullopt;
  }
  if (is_web_page(bytes)) {
    problem = "the file is a web page (HTML), not JSON; download the file itself (\"raw\")";
    return std::nullopt;
  }
  if (nesting_depth(bytes) > kMaxDepth) {
    problem = "not valid JSON: nested too deeply";
    return std::nullopt;
  }
  try {
    return Json::parse(bytes);
  } catch (const std::exception& e) {
    const std::string_view text = e.what();
    // The library starts its texts with "[json.exception.parse_error.101] ".
    const std::size_t end = text.find("] ");
    problem = "not valid JSON: ";
    problem += end == std::string_view::npos ? text : text.substr(end + 2);
    return std::nullopt;
  }
}

std::string json_text(const Json& value) {
  switch (value.type()) {
    case Json::value_t::string:
      return value.get<std::string>();
    case Json::value_t::number_float:
      return exact_text(value.get<double>());
    case Json::value_t::null:
      return {};
    default:
      return value.dump();
  }
}

void flatten_json(const std::string& prefix, const Json& value,
                  const std::function<void(const std::string&, std::string_view)>& keep) {
  if (!value.is_structured()) return keep(prefix, json_text(value));
  if (value.empty()) return;
  if (value.is_array()) {
    for (std::size_t i = 0; i < value.size(); ++i) {
      flatten_json(prefix + "." + std::to_string(i), value[i], keep);
    }
    return;
  }
  for (const auto& [key, field] : value.items()) flatten_json(prefix + "." + key, field, keep);
}

JsonFields::JsonFields(const Json& object)
    : object_(object.is_object() ? &object : &empty_object()), is_object_(object.is_object()) {}

const Json* JsonFields::Find(const std::string& key) const {
  const auto field = object_->find(key);
  return field == object_->end() ? nullptr : &*field;
}

const Json* JsonFields::Read(const std::string& key) {
  read_.insert(key);
  return Find(key);
}

std::optional<double> JsonFields::Number(const std::string& key) {
  const Json* field = Find(key);
  if (field == nullptr) return std::nullopt;
  std::optional<double> number;
  if (field->is_number()) number = field->get<double>();
  if (field->is_string()) number = parse_number(field->get_ref<const std::string&>());
  if (number) read_.insert(key);
  return number;
}

std::string JsonFields::Text(const std::string& key) {
  const Json* field = Find(key);
  if (field == nullptr || (!field->is_string() && !field->is_number())) return {};
  read_.insert(key);
  return std::string(trimmed_text(json_text(*field)));
}

std::optional<bool> JsonFields::Flag(const std::string& key) {
  const Json* field = Find(key);
  if (field == nullptr || !field->is_boolean()) return std::nullopt;
  read_.insert(key);
  return field->get<bool>();
}

void JsonFields::KeepUnread(
    const std::string& prefix,
    const std::function<void(const std::string&, std::string_view)>& keep) const {
  for (const auto& [key, field] : object_->items()) {
    if (read_.contains(key)) continue;
    flatten_json(prefix + "." + key, field, keep);
  }
}

}  // namespace tooldb

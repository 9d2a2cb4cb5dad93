#include "apps/setting_key.h"

#include <array>
#include <optional>

#include "apps/command.h"
#include "apps/display_text.h"
#include "apps/query.h"
#include "apps/tree_items.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

struct ClassKey {
  std::string_view key;
  std::string_view name;  ///< as `class_name` gives it
};

constexpr auto kClassKeys = std::to_array<ClassKey>({{"cutting_tool", "cutting tool"},
                                                     {"cutter", "cutter"},
                                                     {"shank", "shank"},
                                                     {"holder", "holder"},
                                                     {"link", "fixed link"},
                                                     {"component", "component"}});

bool is_class(const tdbItem& item, std::string_view key) {
  for (const ClassKey& row : kClassKeys) {
    if (row.key == key) return class_name(item) == row.name;
  }
  return false;
}

// "NAME#2" as name and number, counted from 1; without a number, nothing.
std::optional<std::size_t> take_number(std::string& part) {
  const auto hash = part.rfind('#');
  if (hash == std::string::npos) return std::nullopt;
  const auto number = parsed_number(std::string_view(part).substr(hash + 1));
  if (!number || *number < 1 || *number != static_cast<double>(static_cast<int>(*number))) {
    return std::nullopt;
  }
  part.erase(hash);
  return static_cast<std::size_t>(*number);
}

std::string listed(tdbCompositeItem& root) {
  std::string names;
  for (const TreeItem& entry : items_below(root)) {
    names += (names.empty() ? "" : ", ") + std::string(class_name(*entry.item)) + " '" +
             entry.item->GetName() + "'";
  }
  return names.empty() ? "it has no items" : "it has " + names;
}

std::vector<tdbItem*> candidates(tdbCompositeItem& root, const std::string& name) {
  std::vector<tdbItem*> named;
  std::vector<tdbItem*> of_class;
  for (const TreeItem& entry : items_below(root)) {
    if (entry.item->GetName() == name) named.push_back(entry.item);
    if (is_class(*entry.item, lower_text(name))) of_class.push_back(entry.item);
  }
  return named.empty() ? of_class : named;
}

}  // namespace

std::vector<std::string> key_parts(const std::string& key) {
  std::vector<std::string> parts(1);
  char quote = '\0';
  for (const char c : key) {
    const bool opens = quote == '\0' && parts.back().empty() && (c == '\'' || c == '"');
    if (opens || c == quote) {
      quote = opens ? c : '\0';
    } else if (c == '.' && quote == '\0') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  if (quote != '\0') throw UsageError("the quote in '" + key + "' is not closed");
  for (const auto& part : parts) {
    if (part.empty()) throw UsageError("'" + key + "' is no key");
  }
  return parts;
}

tdbItem& find_item(tdbCompositeItem& root, const std::string& part) {
  std::string name = part;
  std::vector<tdbItem*> found = candidates(root, name);
  std::optional<std::size_t> number;
  if (found.empty()) {
    number = take_number(name);
    found = candidates(root, name);
  }
  if (found.empty() || (number && *number > found.size())) {
    throw UsageError("there is no item '" + part + "'; " + listed(root));
  }
  if (!number && found.size() > 1) {
    throw UsageError("there are " + std::to_string(found.size()) + " items '" + part + "'; say " +
                     part + "#1 to " + part + '#' + std::to_string(found.size()));
  }
  return *found[number.value_or(1) - 1];
}

tdbItem& find_item_to_change(tdbCompositeItem& root, const std::string& part) {
  tdbItem& item = find_item(root, part);
  if (item.IsComponent() && !root.IsComponent()) {
    throw Failure("item '" + part +
                  "' belongs to a library component; 'tooldb components set' changes that");
  }
  return item;
}

}  // namespace tooldb

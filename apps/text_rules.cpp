#include "apps/text_rules.h"

#include <algorithm>
#include <array>

#include "apps/command.h"
#include "apps/display_text.h"
#include "apps/tree_items.h"
#include "filters/plain_text.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

// Elements inside an item that a parameter of the same name could not be told from.
constexpr auto kOwnElements = std::to_array<std::string_view>(
    {"FILE", "FILE_OPTIONS", "PROFILE", "COLOR", "SHAPE_POSE", "T_PROFILE", "CUTTER", "SHANK",
     "HOLDER", "FIXEDLINK", "ANGLEHEAD", "CUTTINGTOOL", "TOOLCOMPONENT", "COMPONENT_CODE"});

constexpr std::size_t kLongestCode = 512;

class Texts {
 public:
  void Add(std::string where, std::string value, bool one_line,
           std::function<void(const std::string&)> set) {
    list_.push_back({std::move(where), std::move(value), one_line, std::move(set)});
  }

  void AddItem(tdbItem& item, const std::string& of) {
    Add("name" + of, item.GetName(), true, [&](const std::string& v) { item.SetName(v); });
    if (dynamic_cast<tdbToolComponent*>(&item) != nullptr && !item.IsComponent()) {
      Add("component code" + of, item.GetCode(), true,
          [&](const std::string& v) { item.SetCode(v); });
    }
    for (const auto& [name, value] : item.GetParams()) {
      Add("parameter " + name + of, value, false,
          [&item, name = name](const std::string& v) { item.SetParam(name.c_str(), v.c_str()); });
    }
    Add("model file" + of, item.GetShapeFilePath(), false,
        [&](const std::string& v) { item.SetShapeFilePath(v.c_str()); });
    Add("model file options" + of, item.GetFileOptions(), false,
        [&](const std::string& v) { item.SetFileOptions(v.c_str()); });
    Add("environment map" + of, item.GetMaterial().environmentMap, true,
        [&](const std::string& v) { item.GetMaterial().environmentMap = v; });
  }

  void AddTool(tdbTool& tool) {
    Add("description", tool.GetDescr(), false,
        [&](const std::string& v) { tool.SetDescr(v.c_str()); });
    Add("comment", tool.GetComment(), false,
        [&](const std::string& v) { tool.SetComment(v.c_str()); });
    for (int i = 0; i < tool.GetParamCount(); ++i) {
      const std::string name = tool.GetParamName(i);
      Add("parameter " + name, tool.GetParamValue(i), false,
          [&tool, i](const std::string& v) { tool.SetParamValue(i, v.c_str()); });
    }
  }

  std::vector<HeldText> Take() { return std::move(list_); }

 private:
  std::vector<HeldText> list_;
};

std::string of_item(const tdbItem& item) {
  return " of " + std::string(class_name(item)) + " '" + item.GetName() + "'";
}

bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) == 0x7f;
}

bool is_letter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
}

}  // namespace

std::vector<HeldText> held_texts(tdbCompositeItem& root) {
  Texts texts;
  texts.AddItem(root, "");
  if (auto* tool = dynamic_cast<tdbTool*>(&root)) texts.AddTool(*tool);
  for (const TreeItem& entry : items_below(root)) texts.AddItem(*entry.item, of_item(*entry.item));
  return texts.Take();
}

std::string text_problem(std::string_view text, bool one_line) {
  if (const auto at = text.find_first_of("<&\""); at != std::string_view::npos) {
    return std::string("it holds the character ") + text[at] +
           ", which files cannot hold; write the full-width \xef\xbc\x9c, \xef\xbc\x86 or "
           "\xef\xbc\x82 instead";
  }
  for (const char c : text) {
    const bool allowed = !one_line && (c == '\n' || c == '\t');
    if (is_control(c) && !allowed) return "it holds a control character; remove it";
  }
  const bool is_ascii = std::ranges::all_of(text, [](char c) { return (c & 0x80) == 0; });
  if (!is_ascii && printable(text).find("\xef\xbf\xbd") != std::string::npos &&
      text.find("\xef\xbf\xbd") == std::string_view::npos) {
    return "it is not UTF-8; write it in UTF-8";
  }
  return {};
}

std::string parameter_name_problem(std::string_view name) {
  if (std::ranges::find(kOwnElements, name) != kOwnElements.end()) {
    return "the files use that name for something else";
  }
  const auto fits = [](char c) {
    return is_letter(c) || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '.';
  };
  const bool begins_well = !name.empty() && (is_letter(name.front()) || name.front() == '_');
  return begins_well && std::ranges::all_of(name, fits)
             ? ""
             : "it must be letters, digits, '_', '-' and '.', and begin with a letter or '_'";
}

std::string code_problem(const std::string& code) {
  if (code.empty()) return "a code must not be empty";
  if (code.size() > kLongestCode) return "it is longer than 512 bytes";
  if (std::ranges::any_of(code, is_control)) return "it holds a control character";
  if (code.front() == ' ' || code.back() == ' ') return "it begins or ends with a blank";
  const std::string back = tdbUtil::decoding_code(tdbUtil::encoding_code(code));
  if (back != code) return "its file would be read as the code '" + back + "'";
  return {};
}

std::vector<std::string> parameter_name_problems(tdbCompositeItem& root) {
  std::vector<std::string> problems;
  if (const auto* tool = dynamic_cast<const tdbTool*>(&root)) {
    for (const auto& [name, value] : tool->GetParamList()) {
      const std::string problem = text_problem(name, true);
      if (!problem.empty()) problems.push_back("parameter " + name + ": " + problem);
    }
  }
  for (const TreeItem& entry : items_below(root)) {
    for (const auto& [name, value] : entry.item->GetParams()) {
      const std::string problem = parameter_name_problem(name);
      if (problem.empty()) continue;
      problems.push_back("parameter " + name + of_item(*entry.item) + ": " + problem);
    }
  }
  return problems;
}

void require_storable(tdbCompositeItem& root) {
  const std::string problem = code_problem(root.GetCode());
  if (!problem.empty()) throw Failure("code '" + root.GetCode() + "': " + problem);
  const std::string whose = "'" + root.GetCode() + "', ";
  for (const HeldText& text : held_texts(root)) {
    const std::string fault = text_problem(text.value, text.one_line);
    if (!fault.empty()) throw Failure(whose + text.where + ": " + fault);
  }
  const auto names = parameter_name_problems(root);
  if (!names.empty()) throw Failure(whose + names.front());
}

std::vector<std::string> make_storable(tdbCompositeItem& root) {
  std::vector<std::string> changes;
  for (const HeldText& text : held_texts(root)) {
    if (text_problem(text.value, text.one_line).empty()) continue;
    const std::string stored =
        text.one_line ? storable_line(text.value) : storable_text(text.value);
    if (stored == text.value) continue;
    text.set(stored);
    changes.push_back(text.where + ": stored as '" + stored + "'");
  }
  return changes;
}

}  // namespace tooldb

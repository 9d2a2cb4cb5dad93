#include <cstdlib>

#include "tooldb/item.h"
#include "tooldb/model/text.h"
#include "tooldb/tool_parts.h"
#include "tooldb/util.h"

using tooldb::kForbiddenInFileNames;

std::string tdbUtil::encoding_code(std::string code) { return tooldb::encoded_code(code); }

std::string tdbUtil::decoding_code(std::string name) { return tooldb::decoded_code(name); }

std::string tdbUtil::replace_not_windows_char_code(std::string text) {
  return tooldb::encoded_code(text);
}

std::string tdbUtil::replace_not_windows_char_with_str(std::string text, const std::string& with) {
  std::string result;
  for (const char c : text) {
    if (kForbiddenInFileNames.find(c) == std::string_view::npos) {
      result += c;
    } else {
      result += with;
    }
  }
  return result;
}

bool tdbUtil::is_valid_windows_string(std::string text) {
  return text.find_first_of(kForbiddenInFileNames) == std::string::npos;
}

std::string tdbUtil::generate_random_string(int length, std::string alphabet) {
  std::string result;
  if (alphabet.empty()) return result;
  for (int i = 0; i < length; ++i) {
    // NOLINTNEXTLINE(cert-msc30-c,cert-msc50-cpp): names of probe files, not secrets
    result += alphabet[static_cast<unsigned>(std::rand()) % alphabet.size()];
  }
  return result;
}

std::string tdbUtil::trim_left(const std::string& text, const std::string& chars) {
  const auto first = text.find_first_not_of(chars);
  return first == std::string::npos ? std::string() : text.substr(first);
}

std::string tdbUtil::trim_right(const std::string& text, const std::string& chars) {
  return text.substr(0, text.find_last_not_of(chars) + 1);
}

void tdbUtil::to_upper(std::string& text) { text = tooldb::upper_text(text); }

void tdbUtil::build_parent_string(tdbItem* item, std::string& out) {
  if (item != nullptr) out += tooldb::parent_chain(*item);
}

bool tdbUtil::component_is_nested_to_component(tdbItem* item) {
  for (; item != nullptr; item = item->GetParent()) {
    if (dynamic_cast<const tdbToolComponent*>(item) != nullptr) return true;
  }
  return false;
}

void tdbUtil::set_item_component(void* flag, tdbItem* item) {
  item->SetItemComponent(*static_cast<const bool*>(flag));
}

void tdbUtil::set_item_modified(void* flag, tdbItem* item) {
  item->SetModified(*static_cast<const bool*>(flag));
}

void tdbUtil::get_subtree_modifies(void* flag, tdbItem* item) {
  bool& modified = *static_cast<bool*>(flag);
  modified = modified || item->IsModified();
}

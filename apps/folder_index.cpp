#include "apps/folder_index.h"

#include <functional>

#include "apps/tool_folder.h"
#include "tooldb/util.h"

namespace tooldb {

FolderIndex::FolderIndex(ToolFolder& folder) : folder_(folder) {
  for (const auto& tool : folder.ReadAll()) AddTool(*tool);
  if (folder.Components() == nullptr) return;
  for (const tdbToolComponent* component : folder.Components()->All()) AddComponent(*component);
}

FolderIndex::Known* FolderIndex::FindTool(const std::string& code, const std::string& guid) {
  if (!guid.empty()) {
    const auto key = keys_of_guids_.find(guid);
    if (key != keys_of_guids_.end()) return &tools_.at(key->second);
  }
  const auto found = tools_.find(Key(code));
  if (found == tools_.end() || found->second.code != code) return nullptr;
  const bool is_another = !guid.empty() && !found->second.guid.empty();
  return is_another ? nullptr : &found->second;
}

FolderIndex::Known& FolderIndex::AddTool(tdbTool& tool) {
  const std::string key = Key(tool.GetCode());
  Known& known = tools_[key];
  known.code = tool.GetCode();
  known.text = TextOf(tool);
  known.stamp = StampOf(tool.GetCode());
  known.guid = tool.GetParamValue(kGuidParameter);
  known.file = tool.GetParamValue(kFileParameter);
  if (!known.guid.empty()) keys_of_guids_[known.guid] = key;
  return known;
}

FolderIndex::Known* FolderIndex::FindComponent(const std::string& code) {
  const auto found = components_.find(Key(code));
  return found == components_.end() ? nullptr : &found->second;
}

void FolderIndex::AddComponent(const tdbToolComponent& component) {
  Known& known = components_[Key(component.GetCode())];
  known.code = component.GetCode();
  known.text = TextOf(component);
}

std::vector<std::string> FolderIndex::NotMet(const std::string& file) const {
  std::vector<std::string> codes;
  for (const auto& [key, known] : tools_) {
    if (known.file == file && !known.met) codes.push_back(known.code);
  }
  return codes;
}

std::string FolderIndex::TextOf(const tdbItem& item) const {
  std::string text;
  item.WriteXml(text, folder_.SearchPaths());
  return text;
}

bool FolderIndex::IsUnchanged(const Known& known) const {
  return StampOf(known.code) == known.stamp;
}

std::string FolderIndex::Key(const std::string& code) {
  std::string key = code;
  tdbUtil::to_upper(key);
  return key;
}

std::size_t FolderIndex::StampOf(const std::string& code) const {
  if (!folder_.HasFile(code)) return 0;
  return std::hash<std::string>()(file_bytes(folder_.FilePath(code)));
}

}  // namespace tooldb

#include "apps/component_uses.h"

#include <filesystem>

#include "apps/tree_items.h"

namespace tooldb {
namespace {

std::vector<tdbToolComponent*> uses_of(tdbTool& tool, const std::string& code) {
  std::vector<tdbToolComponent*> uses;
  for (const TreeItem& entry : items_below(tool)) {
    auto* component = dynamic_cast<tdbToolComponent*>(entry.item);
    const bool is_use = component != nullptr && !component->IsComponent();
    if (is_use && component->GetCode() == code) uses.push_back(component);
  }
  return uses;
}

}  // namespace

void add_component_arguments(CLI::App& app, ComponentOptions& options) {
  app.add_option("FOLDER", options.folder, "Folder of the components")->required();
}

void add_library_option(CLI::App& app, ComponentOptions& options) {
  app.add_option("--library", options.library,
                 "Folder of the tools that use the components; without it the folder around")
      ->type_name("DIR");
}

std::string library_around(const ComponentOptions& options) {
  if (!options.library.empty()) return options.library;
  const auto folder = std::filesystem::path(options.folder).lexically_normal();
  const bool ends_in_slash = !folder.has_filename();
  const auto inner = ends_in_slash ? folder.parent_path() : folder;
  if (inner.filename() != kComponentsFolder) return {};
  return inner.has_parent_path() ? inner.parent_path().string() : ".";
}

std::vector<std::string> tools_using(const ComponentOptions& options, const std::string& code,
                                     Console& console) {
  std::vector<std::string> codes;
  const std::string library = library_around(options);
  if (library.empty()) return codes;
  ToolFolder folder({library, options.folder}, Use::kRead, console);
  for (const auto& tool : folder.ReadAll()) {
    if (!uses_of(*tool, code).empty()) codes.push_back(tool->GetCode());
  }
  return codes;
}

std::size_t redirect_uses(const ComponentOptions& options, const std::string& code,
                          const std::string& new_code, Console& console) {
  const std::string library = library_around(options);
  if (library.empty()) return 0;
  ToolFolder folder({library, options.folder}, Use::kWrite, console);
  std::size_t changed = 0;
  for (const auto& user : tools_using(options, code, console)) {
    // Read again: someone else may have changed it while the others were looked at.
    const ToolToEdit edited = folder.ReadToEdit(user);
    for (tdbToolComponent* use : uses_of(*edited.tool, code)) use->SetCode(new_code);
    folder.CheckUnchanged(edited);
    folder.Update(*edited.tool);
    ++changed;
  }
  return changed;
}

}  // namespace tooldb

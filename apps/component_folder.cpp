#include "apps/component_folder.h"

#include "apps/display_text.h"

namespace tooldb {

ComponentFolder::ComponentFolder(const std::string& path, Use use, Console& console)
    : path_(path), database_("components", 0) {
  open_folder(database_, path_, use);
  report_errors<tdbToolComponentsDB, tdbToolComponentsDB*>(database_, console);
  database_.Read();
}

std::vector<std::string> ComponentFolder::FileNames() const {
  std::vector<std::string> names;
  tdbFileUtil::get_files(path_, names, kComponentExtension);
  return names;
}

std::string ComponentFolder::FilePath(const std::string& code) const {
  return path_ + '/' + tdbUtil::encoding_code(code) + kComponentExtension;
}

bool ComponentFolder::HasFile(const std::string& code) const {
  return tdbFileUtil::file_exists(FilePath(code));
}

std::vector<tdbToolComponent*> ComponentFolder::All() {
  std::vector<tdbToolComponent*> all(static_cast<std::size_t>(database_.GetCount(1)));
  for (int i = 0; auto& component : all) component = database_.GetToolComponent(i++, 1);
  return all;
}

tdbToolComponent* ComponentFolder::Find(const std::string& code) {
  return database_.GetToolComponentByCode(code, 1);
}

tdbToolComponent& ComponentFolder::Require(const std::string& code) {
  if (tdbToolComponent* found = Find(code)) return *found;
  std::vector<std::string> codes;
  for (const tdbToolComponent* component : All()) codes.push_back(component->GetCode());
  const std::string meant(nearest(code, codes));
  throw Failure("there is no component '" + code + "' in " + path_ +
                (meant.empty() ? "" : "; did you mean '" + meant + "'?"));
}

ComponentToEdit ComponentFolder::ReadToEdit(const std::string& code) {
  // The bytes come first: a change between the two reads is then seen as one.
  std::string bytes = HasFile(code) ? file_bytes(FilePath(code)) : std::string();
  database_.Reload({code});
  return {std::make_unique<tdbToolComponent>(Require(code)), code, std::move(bytes)};
}

void ComponentFolder::CheckUnchanged(const ComponentToEdit& edited) const {
  require_unchanged(FilePath(edited.code), edited.bytes);
}

void ComponentFolder::Write(std::unique_ptr<tdbToolComponent> component) {
  tdbError error;
  if (!database_.AddTool(component.get(), error, true)) {
    throw Failure(file_message(FilePath(component->GetCode()), error));
  }
  static_cast<void>(component.release());
}

void ComponentFolder::Remove(const std::string& code) {
  tdbError error;
  tdbToolComponent* component = &Require(code);
  if (!database_.RemoveTool(component, error)) throw Failure(file_message(FilePath(code), error));
  delete component;  // handed back by the database
}

}  // namespace tooldb

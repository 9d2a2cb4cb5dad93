#include "apps/tool_folder.h"

#include "apps/command.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/progress.h"
#include "tooldb/util.h"
#include "tooldb/xml_reader.h"

namespace tooldb {

void add_folder_arguments(CLI::App& app, FolderOptions& options) {
  app.add_option("FOLDER", options.folder, "The library's folder")->required();
  app.add_option("--components", options.components,
                 "Folder of the library components; without it \"components\" in FOLDER, if it "
                 "exists")
      ->type_name("DIR");
}

void add_tool_arguments(CLI::App& app, FolderOptions& options, std::string& code) {
  add_folder_arguments(app, options);
  app.add_option("CODE", code, "The tool's code")->required();
}

ToolFolder::ToolFolder(const FolderOptions& options, Use use, Console& console)
    : console_(console), path_(options.folder), database_("tooldb", 0) {
  open_folder(database_, path_, use);
  report_errors<tdbToolDB, const tdbToolDB*>(database_, console);
  if (!options.components.empty()) {
    OpenComponents(options.components, use);
  } else if (tdbFileUtil::directory_exists(InnerComponents())) {
    OpenComponents(InnerComponents(), use);
  }
}

std::string ToolFolder::InnerComponents() const { return path_ + '/' + kComponentsFolder; }

void ToolFolder::OpenComponents(const std::string& folder, Use use) {
  components_ = std::make_unique<ComponentFolder>(folder, use, console_);
  database_.LinkToolComponents(&components_->Database());
}

tdbToolComponentsDB* ToolFolder::ComponentsDatabase() {
  return components_ == nullptr ? nullptr : &components_->Database();
}

ComponentFolder& ToolFolder::RequireComponents() {
  if (components_ == nullptr) {
    tdbFileUtil::create_directory(InnerComponents());
    OpenComponents(InnerComponents(), Use::kWrite);
  }
  return *components_;
}

std::vector<std::string> ToolFolder::FileNames() const {
  std::vector<std::string> names;
  tdbFileUtil::get_files(path_, names, kToolExtension);
  return names;
}

std::vector<std::string> ToolFolder::Codes() const {
  std::vector<std::string> codes;
  for (const auto& name : FileNames()) codes.push_back(code_of_file(name));
  return codes;
}

std::string ToolFolder::FilePath(const std::string& code) const {
  return path_ + '/' + tdbUtil::encoding_code(code) + kToolExtension;
}

bool ToolFolder::HasFile(const std::string& code) const {
  return tdbFileUtil::file_exists(FilePath(code));
}

std::unique_ptr<tdbTool> ToolFolder::ReadFile(const std::string& name, tdbError& error) {
  std::unique_ptr<tdbTool> tool(tdbXmlReader::ReadTool((path_ + '/' + name).c_str(), SearchPaths(),
                                                       error, ComponentsDatabase()));
  if (tool == nullptr) return nullptr;
  tool->SetModified(true);  // an unmodified item's placement would not be refreshed
  tool->Update();
  tool->SetModified(false);
  return tool;
}

std::vector<std::unique_ptr<tdbTool>> ToolFolder::ReadAll() {
  const std::vector<std::string> names = FileNames();
  std::vector<std::unique_ptr<tdbTool>> tools;
  Progress progress(console_, "reading", names.size());
  for (const auto& name : names) {
    tdbError error;
    if (auto tool = ReadFile(name, error)) {
      tools.push_back(std::move(tool));
    } else {
      progress.Hide();
      console_.Error(file_message(path_ + '/' + name, error));
    }
    progress.Step();
  }
  return tools;
}

std::unique_ptr<tdbTool> ToolFolder::ReadTool(const std::string& code) {
  if (!HasFile(code)) {
    const auto codes = Codes();
    const std::string meant(nearest(code, codes));
    throw Failure("there is no tool '" + code + "' in " + path_ +
                  (meant.empty() ? "" : "; did you mean '" + meant + "'?"));
  }
  tdbError error;
  auto tool = ReadFile(tdbUtil::encoding_code(code) + kToolExtension, error);
  if (tool == nullptr) throw Failure(file_message(FilePath(code), error));
  return tool;
}

ToolToEdit ToolFolder::ReadToEdit(const std::string& code) {
  // The bytes come first: a change between the two reads is then seen as one.
  std::string bytes = HasFile(code) ? file_bytes(FilePath(code)) : std::string();
  return {ReadTool(code), code, std::move(bytes)};
}

void ToolFolder::CheckUnchanged(const ToolToEdit& edited) const {
  require_unchanged(FilePath(edited.code), edited.bytes);
}

void ToolFolder::AddNew(std::unique_ptr<tdbTool> tool) {
  const std::string path = FilePath(tool->GetCode());
  // The library looks for the code as it stands, which is not always the name of its file.
  if (HasFile(tool->GetCode())) {
    throw Failure("there is a tool '" + tool->GetCode() + "' already: " + path);
  }
  tdbError error;
  if (!database_.AddTool(tool.get(), error, false)) throw Failure(file_message(path, error));
  static_cast<void>(tool.release());
}

void ToolFolder::Update(tdbTool& tool) {
  tdbError error;
  if (!database_.UpdateTool(&tool, error)) {
    throw Failure(file_message(FilePath(tool.GetCode()), error));
  }
}

}  // namespace tooldb

#include "apps/tool_folder.h"

#include <algorithm>
#include <new>

#include "apps/command.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/progress.h"
#include "tooldb/util.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

/// A tool, or null, with its placements up to date.
std::unique_ptr<tdbTool> fresh(std::unique_ptr<tdbTool> tool) {
  if (tool == nullptr) return nullptr;
  tool->SetModified(true);  // an unmodified item's placement would not be refreshed
  tool->Update();
  tool->SetModified(false);
  return tool;
}

}  // namespace

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

void ToolFolder::ReadFiles(const std::vector<std::string>& names, const TakeFile& take) {
  constexpr std::size_t kAtOnce = 256;  // enough for many cores, few to hold
  for (std::size_t begin = 0; begin < names.size(); begin += kAtOnce) {
    const std::size_t end = std::min(names.size(), begin + kAtOnce);
    std::vector<std::string> paths;
    for (std::size_t i = begin; i < end; ++i) paths.push_back(path_ + '/' + names[i]);
    std::vector<tdbTool*> read;
    std::vector<tdbError> errors;
    tdbXmlReader::ReadTools(paths, SearchPaths(), read, errors, ComponentsDatabase());
    if (read.size() != paths.size()) throw std::bad_alloc();
    std::vector<std::unique_ptr<tdbTool>> tools(read.begin(), read.end());
    for (std::size_t i = begin; i < end; ++i) {
      take(names[i], fresh(std::move(tools[i - begin])), errors[i - begin]);
    }
  }
}

std::vector<std::unique_ptr<tdbTool>> ToolFolder::ReadAll() {
  const std::vector<std::string> names = FileNames();
  std::vector<std::unique_ptr<tdbTool>> tools;
  Progress progress(console_, "reading", names.size());
  ReadFiles(names, [&](const std::string& name, auto tool, const tdbError& error) {
    if (tool != nullptr) {
      tools.push_back(std::move(tool));
    } else {
      progress.Hide();
      console_.Error(file_message(path_ + '/' + name, error));
    }
    progress.Step();
  });
  return tools;
}

std::unique_ptr<tdbTool> ToolFolder::ReadTool(const std::string& code) {
  if (!HasFile(code)) {
    const auto codes = Codes();
    const std::string meant(nearest(code, codes));
    throw Failure("there is no tool '" + code + "' in " + path_ +
                  (meant.empty() ? "" : "; did you mean '" + meant + "'?"));
  }
  const std::string path = FilePath(code);
  tdbError error;
  std::unique_ptr<tdbTool> tool(
      tdbXmlReader::ReadTool(path.c_str(), SearchPaths(), error, ComponentsDatabase()));
  if (tool == nullptr) throw Failure(file_message(path, error));
  return fresh(std::move(tool));
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

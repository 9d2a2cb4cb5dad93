#include "apps/tool_folder.h"

#include "apps/command.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/progress.h"
#include "tooldb/util.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

constexpr std::string_view kComponentsFolder = "components";

std::string described(const tdbError& error) {
  return error.message.empty() ? "error " + std::to_string(error.code) : error.message;
}

int report(Console& console, const tdbError& error) {
  console.Error(described(error));
  return 0;
}

// Opens the folder of a database. For reading nothing is tried out in it, so that a folder which
// cannot be written serves as well.
template <class Database>
void open_folder(Database& database, const std::string& folder, ToolFolder::Use use) {
  if (!tdbFileUtil::directory_exists(folder)) {
    throw Failure("there is no folder '" + folder + "'; 'tooldb init' makes one");
  }
  database.SetFolderPath(folder.c_str());
  tdbError error;
  std::string path = folder;
  tdbFileManager& files = *database.GetFileManager();
  const bool opened =
      use == ToolFolder::Use::kWrite ? files.Init(path, error) : files.Create(path, error);
  if (!opened) throw Failure(folder + ": the folder cannot be written (" + error.message + ")");
  database.AddSearchPaths({folder});
}

std::string code_of_file(const std::string& name) {
  std::string stem;
  tdbFileUtil::get_file_name(name, stem);
  return tdbUtil::decoding_code(stem);
}

}  // namespace

void add_folder_arguments(CLI::App& app, FolderOptions& options) {
  app.add_option("FOLDER", options.folder, "The library's folder")->required();
  app.add_option("--components", options.components,
                 "Folder of the library components; without it \"components\" in FOLDER, if it "
                 "exists")
      ->type_name("DIR");
}

void add_force_option(CLI::App& app, bool& force) {
  app.add_flag("--force", force, "Write even if the file was changed by someone else meanwhile");
}

ToolFolder::ToolFolder(const FolderOptions& options, Use use, Console& console)
    : console_(console), path_(options.folder), database_("tooldb", 0) {
  open_folder(database_, path_, use);
  database_.SetErrorCallback(
      [](void* user, const tdbToolDB*, tdbError* error) {
        return report(*static_cast<Console*>(user), *error);
      },
      &console_);
  const std::string inside = path_ + '/' + std::string(kComponentsFolder);
  if (!options.components.empty()) {
    OpenComponents(options.components, use);
  } else if (tdbFileUtil::directory_exists(inside)) {
    OpenComponents(inside, use);
  }
}

void ToolFolder::OpenComponents(const std::string& folder, Use use) {
  components_path_ = folder;
  components_.emplace("components", 0);
  components_->SetErrorCallback(
      [](void* user, tdbToolComponentsDB*, tdbError* error) {
        return report(*static_cast<Console*>(user), *error);
      },
      &console_);
  open_folder(*components_, folder, use);
  components_->Read();
  database_.LinkToolComponents(&*components_);
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
  std::unique_ptr<tdbTool> tool(
      tdbXmlReader::ReadTool((path_ + '/' + name).c_str(), SearchPaths(), error, Components()));
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
  const std::string path = FilePath(edited.code);
  if (tdbFileUtil::file_exists(path) && file_bytes(path) == edited.bytes) return;
  throw Failure(path + ": the file was changed since it was read; nothing was written (--force " +
                "overwrites it)");
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

void ToolFolder::WriteComponent(std::unique_ptr<tdbToolComponent> component) {
  if (!components_) {
    const std::string inside = path_ + '/' + std::string(kComponentsFolder);
    tdbFileUtil::create_directory(inside);
    OpenComponents(inside, Use::kWrite);
  }
  tdbError error;
  if (!components_->AddTool(component.get(), error, true)) {
    throw Failure(file_message(components_path_, error));
  }
  static_cast<void>(component.release());
}

std::string file_message(const std::string& file, const tdbError& error) {
  const std::string text = described(error);
  return text.find(file) == std::string::npos ? file + ": " + text : text;
}

std::string file_bytes(const std::string& path) {
  std::string bytes;
  try {
    tdbFileUtil::read_file(path, bytes);
  } catch (const tdbError& error) {
    throw Failure(file_message(path, error));
  }
  return bytes;
}

}  // namespace tooldb

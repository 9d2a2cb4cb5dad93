#include <filesystem>
#include <memory>
#include <set>

#include "apps/command.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/export_document.h"
#include "apps/progress.h"
#include "apps/query_option.h"
#include "apps/text_rules.h"
#include "apps/tool_folder.h"
#include "apps/tree_items.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

struct Options {
  FolderOptions folder;
  std::string target;
  std::vector<std::string> codes;
  std::string where;
  bool with_components = false;
  bool no_models = false;
  bool force = false;
};

using Tools = std::vector<std::unique_ptr<tdbTool>>;

Tools chosen_tools(const Options& options, ToolFolder& folder, Console& console) {
  const auto selected = tool_filter(options.where);
  Tools tools;
  if (options.codes.empty()) {
    tools = folder.ReadAll();
  } else {
    for (const auto& code : options.codes) {
      try {
        tools.push_back(folder.ReadTool(code));
      } catch (const Failure& failure) {
        console.Error(failure.what());
      }
    }
  }
  std::erase_if(tools, [&](const auto& tool) { return !selected(*tool); });
  return tools;
}

// The library components that items use, and that those use in turn.
void collect_components(tdbCompositeItem& root, ComponentFolder& library,
                        std::vector<tdbToolComponent*>& found) {
  std::vector<tdbCompositeItem*> roots{&root};
  while (!roots.empty()) {
    tdbCompositeItem* next = roots.back();
    roots.pop_back();
    for (const TreeItem& entry : items_below(*next)) {
      if (dynamic_cast<tdbToolComponent*>(entry.item) == nullptr) continue;
      tdbToolComponent* used = library.Find(entry.item->GetCode());
      if (used == nullptr || std::ranges::find(found, used) != found.end()) continue;
      found.push_back(used);
      roots.push_back(used);
    }
  }
}

std::vector<tdbToolComponent*> used_components(const Tools& tools, ToolFolder& folder) {
  std::vector<tdbToolComponent*> found;
  if (folder.Components() == nullptr) return found;
  for (const auto& tool : tools) collect_components(*tool, *folder.Components(), found);
  return found;
}

void copy_models(ToolFolder& target, tdbTool& tool) {
  tdbError error;
  std::string path = target.Path();
  if (!target.Database().GetFileManager()->CopyShapeFileToFolder(&tool, path, error)) {
    throw Failure("tool '" + tool.GetCode() + "', model file: " + error.message);
  }
}

void export_tool(const Options& options, ToolFolder& target, std::unique_ptr<tdbTool> tool) {
  require_storable(*tool);
  if (!options.no_models) copy_models(target, *tool);
  if (options.force && target.HasFile(tool->GetCode())) {
    target.Update(*tool);
  } else {
    target.AddNew(std::move(tool));
  }
}

void export_folder(const Options& options, Tools tools, ToolFolder& folder, Console& console) {
  if (!tdbFileUtil::directory_exists(options.target)) {
    tdbFileUtil::create_directory(options.target);
  }
  ToolFolder target({options.target, ""}, Use::kWrite, console);
  for (const tdbToolComponent* component : used_components(tools, folder)) {
    target.RequireComponents().Write(std::make_unique<tdbToolComponent>(*component));
  }
  Progress progress(console, "exporting", tools.size());
  std::size_t written = 0;
  for (auto& tool : tools) {
    try {
      export_tool(options, target, std::move(tool));
      ++written;
    } catch (const Failure& failure) {
      progress.Hide();
      console.Error(failure.what());
    }
    progress.Step();
  }
  console.Note("exported " + counted(written, "tool") + " to " + options.target);
}

void write_document(const Options& options, const Tools& tools, ToolFolder& folder,
                    Console& console) {
  std::vector<tdbToolComponent*> components = used_components(tools, folder);
  if (!options.with_components && !components.empty()) {
    console.Warn("the tools use " + counted(components.size(), "library component") +
                 ", which the document does not hold; --with-components adds them");
    components.clear();
  }
  if (tdbFileUtil::file_exists(options.target) && !options.force) {
    throw Failure(options.target + ": the file is there already; --force replaces it");
  }
  ExportDocument document(std::filesystem::path(options.target).parent_path().string());
  for (tdbToolComponent* component : components) document.Add(*component);
  std::size_t written = 0;
  for (const auto& tool : tools) {
    try {
      document.Add(*tool);
      ++written;
    } catch (const Failure& failure) {
      console.Error(failure.what());
    }
  }
  tdbFileUtil::write_file(options.target, document.Text());
  console.Note("exported " + counted(written, "tool") + " to " + options.target);
}

bool is_document(const std::string& target) { return lower_text(target).ends_with(".xml"); }

void run(const Options& options, Console& console) {
  ToolFolder folder(options.folder, Use::kRead, console);
  Tools tools = chosen_tools(options, folder, console);
  if (tools.empty()) throw Failure("there are no tools to export");
  if (is_document(options.target)) {
    write_document(options, tools, folder, console);
  } else {
    export_folder(options, std::move(tools), folder, console);
  }
}

void add_arguments(CLI::App& app, Options& options) {
  add_folder_arguments(app, options.folder);
  app.add_option("TARGET", options.target, "A folder, or a file that ends in .xml")->required();
  app.add_option("CODE", options.codes, "Only these tools");
  add_where_option(app, options.where);
  app.add_flag("--with-components", options.with_components,
               "Put the library components that the tools use into the document");
  app.add_flag("--no-models", options.no_models,
               "Do not copy model files into the folder; the tools refer to where they are");
  app.add_flag("--force", options.force, "Replace files that are there already");
}

constexpr Example kExamples[] = {
    {"tooldb export lib backup", "Copies the library to the folder backup."},
    {"tooldb export lib all.xml --with-components", "Puts everything into one document."},
    {"tooldb export lib drills.xml --where \"kind = drill\"", "Only the drills."},
};

}  // namespace

extern const Command kExport;
const Command kExport = {
    "export",
    "Writes tools to another folder or to one document",
    "A folder gets the tools' files, the components that they use (in the folder \"components\" "
    "inside) and their model files; it is made when it is not there. Tools that it has already "
    "are refused.\n"
    "\n"
    "A document names the code of each tool, so that \"tooldb import\" gives every tool back as it "
    "was.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

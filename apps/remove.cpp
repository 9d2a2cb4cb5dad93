#include "apps/command.h"
#include "apps/console.h"
#include "apps/tool_folder.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

struct Options {
  FolderOptions folder;
  std::vector<std::string> codes;
};

// The file is deleted whether or not it can be read: removing a broken one is a remedy.
void remove_tool(ToolFolder& folder, const std::string& code, Console& console) {
  if (!folder.HasFile(code)) folder.ReadTool(code);  // raises, with the nearest code
  tdbTool named(code);
  tdbError error;
  if (!folder.Database().RemoveTool(&named, error)) {
    throw Failure(file_message(folder.FilePath(code), error));
  }
  console.Note("removed " + code);
}

void run(const Options& options, Console& console) {
  ToolFolder folder(options.folder, Use::kWrite, console);
  for (const auto& code : options.codes) {
    try {
      remove_tool(folder, code, console);
    } catch (const Failure& failure) {
      console.Error(failure.what());
    }
  }
}

void add_arguments(CLI::App& app, Options& options) {
  add_folder_arguments(app, options.folder);
  app.add_option("CODE", options.codes, "Codes of the tools")->required();
}

constexpr Example kExamples[] = {
    {"tooldb remove lib T1 T2", "Deletes two tools with their files."},
};

}  // namespace

extern const Command kRemove;
const Command kRemove = {
    "remove",
    "Deletes tools",
    "The tool's file is deleted. A code that is not there is reported; the others are deleted.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

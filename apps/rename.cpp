#include "apps/command.h"
#include "apps/console.h"
#include "apps/text_rules.h"
#include "apps/tool_folder.h"

namespace tooldb {
namespace {

struct Options {
  FolderOptions folder;
  std::string code;
  std::string new_code;
  bool force = false;
};

void run(const Options& options, Console& console) {
  ToolFolder folder(options.folder, Use::kWrite, console);
  const ToolToEdit edited = folder.ReadToEdit(options.code);
  edited.tool->SetCode(options.new_code);
  require_storable(*edited.tool);
  if (!options.force) folder.CheckUnchanged(edited);
  tdbError error;
  if (!folder.Database().RenameTool(options.code, edited.tool.get(), error)) {
    if (error.code == kFileExists) {
      throw Failure("there is a tool '" + options.new_code +
                    "' already: " + folder.FilePath(options.new_code));
    }
    throw Failure(file_message(folder.FilePath(options.new_code), error));
  }
  console.Note("renamed " + options.code + " to " + options.new_code);
}

void add_arguments(CLI::App& app, Options& options) {
  add_tool_arguments(app, options.folder, options.code);
  app.add_option("NEWCODE", options.new_code, "Its new code")->required();
  add_force_option(app, options.force);
}

constexpr Example kExamples[] = {
    {"tooldb rename lib T1 D10-R2", "The tool T1 is called D10-R2 from now on."},
};

}  // namespace

extern const Command kRename;
const Command kRename = {
    "rename",
    "Gives a tool another code",
    "The file is renamed with it. A code that another tool has is refused, also where two codes "
    "share one file name. A code may hold characters that file names cannot, such as \"/\".",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

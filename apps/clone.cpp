#include <memory>

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
};

// A copy under the first free code of the form "CODE - Clone(n)". The library chooses it among the
// tools of a database, so one in memory is filled with the codes of the folder.
std::unique_ptr<tdbTool> clone_under_free_code(const ToolFolder& folder, tdbTool& tool) {
  tdbToolDB codes("codes", 1);
  tdbError error;
  for (const auto& code : folder.Codes()) codes.AddTool(new tdbTool(code), error, false);
  if (!codes.CloneTool(&tool, error)) throw Failure(error.message);
  tdbTool* clone = codes.GetTool(codes.GetToolCount(1) - 1, 1);
  codes.RemoveTool(clone, error);
  return std::unique_ptr<tdbTool>(clone);
}

std::unique_ptr<tdbTool> clone_as(const tdbTool& tool, const std::string& code) {
  auto clone = std::make_unique<tdbTool>(tool);
  clone->SetCode(code);
  return clone;
}

void run(const Options& options, Console& console) {
  ToolFolder folder(options.folder, Use::kWrite, console);
  const auto tool = folder.ReadTool(options.code);
  auto clone = options.new_code.empty() ? clone_under_free_code(folder, *tool)
                                        : clone_as(*tool, options.new_code);
  require_storable(*clone);
  const std::string code = clone->GetCode();
  folder.AddNew(std::move(clone));
  console.Print(code + '\n');
}

void add_arguments(CLI::App& app, Options& options) {
  add_tool_arguments(app, options.folder, options.code);
  app.add_option("NEWCODE", options.new_code,
                 "Code of the copy; without it the first free \"CODE - Clone(n)\"");
}

constexpr Example kExamples[] = {
    {"tooldb clone lib T1", "Makes the tool \"T1 - Clone(1)\" and prints its code."},
    {"tooldb clone lib T1 T2", "Makes the copy T2."},
};

}  // namespace

extern const Command kClone;
const Command kClone = {
    "clone",   "Copies a tool within its folder",    "Prints the code of the copy.",
    kExamples, declare<Options, add_arguments, run>, {},
};

}  // namespace tooldb

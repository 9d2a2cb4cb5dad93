#include <fmt/format.h>

#include <optional>

#include "apps/bodies.h"
#include "apps/command.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/output_file.h"
#include "apps/setting_key.h"
#include "apps/tool_folder.h"
#include "tooldb/profile.h"
#include "tooldb/stl.h"

namespace tooldb {
namespace {

struct Options {
  FolderOptions folder;
  std::string code;
  std::string output;
  std::string item;
  std::optional<double> tolerance;
  bool ascii = false;
  bool section = false;
};

using Mesh = std::vector<Triangle<double>>;

bool is_within(const tdbItem* item, const tdbItem& root) {
  while (item != nullptr && item != &root) item = item->GetParent();
  return item != nullptr;
}

void report_refused(tdbTool& tool, const tdbItem& root, Console& console) {
  std::vector<Body> bodies = bodies_of(tool, fine_tolerance(tool));
  std::erase_if(bodies, [&](const Body& body) { return !is_within(body.item, root); });
  for (const auto& line : refusals("tool '" + tool.GetCode() + "'", bodies)) console.Error(line);
}

void run(const Options& options, Console& console) {
  ToolFolder folder(options.folder, Use::kRead, console);
  const auto tool = folder.ReadTool(options.code);
  tdbItem& root = options.item.empty() ? *tool : find_item(*tool, options.item);
  if (options.section) tool->EnableSection(true);
  const double tolerance = options.tolerance.value_or(tool->GetToolModelTolerance());
  require_tolerance(tolerance);
  report_refused(*tool, root, console);
  Mesh mesh;
  const bool is_cut = options.section && options.item.empty();
  const bool has_shape = is_cut ? tdbProfile::GetSectionShape(*tool, nullptr, mesh, tolerance)
                                : tdbProfile::GetAssemblyShape(root, nullptr, mesh, tolerance);
  if (!has_shape) throw Failure("tool '" + options.code + "' has no shape to mesh");
  const std::string bytes = options.ascii ? tdbStlText(mesh, options.code) : tdbStlBinary(mesh);
  if (bytes.empty()) throw Failure("the mesh is too large; raise --tolerance");
  write_output(options.output, bytes, console);
  console.Note(fmt::format("{} in {}", counted(mesh.size(), "triangle"),
                           tool->GetUnitOfMeasurement() == 0 ? "mm" : "inch"));
}

void add_arguments(CLI::App& app, Options& options) {
  add_tool_arguments(app, options.folder, options.code);
  add_output_option(app, options.output, "The STL file to write");
  app.add_option("--tolerance", options.tolerance,
                 "Largest distance from the true surface; without it the tool's own tolerance")
      ->type_name("T");
  app.add_option("--item", options.item, "Only this item and what hangs on it")->type_name("NAME");
  app.add_flag("--ascii", options.ascii, "Write the text form of STL, not the binary one");
  app.add_flag("--section", options.section, "Cut the tool open as its section view says");
}

constexpr Example kExamples[] = {
    {"tooldb mesh lib T1 -o t1.stl", "The whole tool as one mesh."},
    {"tooldb mesh lib T1 --item holder --tolerance 0.005 -o holder.stl", "Its holder, finer."},
};

}  // namespace

extern const Command kMesh;
const Command kMesh = {
    "mesh",
    "Writes the shape of a tool as an STL file",
    "The mesh is that of the assembled tool: watertight bodies, each where it stands, in the "
    "tool's unit. An item is meshed in its own frame. STL knows no unit; the one of the numbers is "
    "printed.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

#include <memory>

#include "apps/command.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/drawing/drawing.h"
#include "apps/output_file.h"
#include "apps/progress.h"
#include "apps/query_option.h"
#include "apps/tool_folder.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

struct Options {
  FolderOptions folder;
  std::string code;
  std::string output;
  std::string where;
  bool all = false;
};

// Draws one tool; raises `Failure` when nothing of it can be drawn.
void draw_tool(tdbTool& tool, const std::string& path, Console& console) {
  std::vector<std::string> refused;
  const std::string drawing = drawing_of(tool, refused);
  for (const auto& reason : refused) console.Error("tool '" + tool.GetCode() + "', " + reason);
  if (drawing.empty()) throw Failure("tool '" + tool.GetCode() + "' has nothing to draw");
  write_output(path, drawing, console);
}

void draw_all(const Options& options, ToolFolder& folder, Console& console) {
  if (options.output.empty()) throw UsageError("--all needs a folder after -o");
  if (!tdbFileUtil::directory_exists(options.output)) {
    tdbFileUtil::create_directory(options.output);
  }
  const auto selected = tool_filter(options.where);
  const auto tools = folder.ReadAll();
  Progress progress(console, "drawing", tools.size());
  std::size_t drawn = 0;
  for (const auto& tool : tools) {
    progress.Step();
    if (!selected(*tool)) continue;
    try {
      const std::string name = tdbUtil::encoding_code(tool->GetCode()) + ".svg";
      draw_tool(*tool, options.output + '/' + name, console);
      ++drawn;
    } catch (const Failure& failure) {
      progress.Hide();
      console.Error(failure.what());
    }
  }
  console.Note(counted(drawn, "drawing") + " in " + options.output);
}

void run(const Options& options, Console& console) {
  if (options.all != options.code.empty()) {
    throw UsageError("name one tool, or say --all");
  }
  ToolFolder folder(options.folder, Use::kRead, console);
  if (options.all) return draw_all(options, folder, console);
  draw_tool(*folder.ReadTool(options.code), options.output, console);
  if (!options.output.empty()) console.Note("drew " + options.code + " to " + options.output);
}

Action declare(CLI::App& app) {
  auto options = std::make_shared<Options>();
  add_folder_arguments(app, options->folder);
  app.add_option("CODE", options->code, "The tool's code");
  add_output_option(app, options->output, "The SVG file to write; with --all the folder");
  app.add_flag("--all", options->all, "Draw every tool, each into a file named by its code");
  add_where_option(app, options->where);
  return [options](Console& console) { run(*options, console); };
}

constexpr Example kExamples[] = {
    {"tooldb draw lib T1 -o t1.svg", "Draws T1."},
    {"tooldb draw lib --all -o drawings --where \"kind = drill\"", "Draws every drill."},
};

}  // namespace

extern const Command kDraw;
const Command kDraw = {
    "draw",
    "Draws tools to scale, with dimensions",
    "An SVG drawing on a sheet of A4, ready to print; on a screen it follows a light or dark "
    "setting. The tool stands tip down, in section at the left of its axis, from outside at the "
    "right; a turning tool lies with its tip at the left. Cutting part, shank and holder differ in "
    "colour and hatch; the edge that cuts is red. Lengths run from the tip or the programmed "
    "point, which is marked. The scale and the unit of the numbers stand in the title block.",
    kExamples,
    declare,
    {},
};

}  // namespace tooldb

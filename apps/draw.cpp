#include <filesystem>
#include <memory>

#include "apps/command.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/drawn_parts.h"
#include "apps/progress.h"
#include "apps/query_option.h"
#include "apps/tool_drawing.h"
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

/// The drawing of a tool; parts that cannot be drawn are reported.
std::string drawing_of(tdbTool& tool, Console& console) {
  const ToolView view = view_of(tool, drawing_tolerance(tool));
  for (const std::string& problem : view.problems) {
    console.Warn("tool '" + tool.GetCode() + "', " + problem);
  }
  if (view.parts.empty()) {
    throw Failure("tool '" + tool.GetCode() + "' has nothing to draw: no part has an outline");
  }
  return tool_drawing(tool, view);
}

void draw_all(const Options& options, ToolFolder& folder, Console& console) {
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
      const auto name = tdbUtil::encoding_code(tool->GetCode()) + ".svg";
      tdbFileUtil::write_file((std::filesystem::path(options.output) / name).string(),
                              drawing_of(*tool, console));
      ++drawn;
    } catch (const Failure& failure) {
      progress.Hide();
      console.Error(failure.what());
    }
  }
  console.Note("drew " + counted(drawn, "tool") + " into " + options.output);
}

void run(const Options& options, Console& console) {
  if (options.all != options.code.empty()) {
    throw UsageError("name one tool, or --all; not both");
  }
  if (options.all && options.output.empty()) throw UsageError("--all needs -o FOLDER");
  ToolFolder folder(options.folder, Use::kRead, console);
  if (options.all) {
    draw_all(options, folder, console);
    return;
  }
  const std::string svg = drawing_of(*folder.ReadTool(options.code), console);
  if (options.output.empty()) {
    console.PrintBytes(svg);
  } else {
    tdbFileUtil::write_file(options.output, svg);
    console.Note("drew " + options.code + " to " + options.output);
  }
}

Action declare(CLI::App& app) {
  auto options = std::make_shared<Options>();
  add_folder_arguments(app, options->folder);
  app.add_option("CODE", options->code, "Code of the tool");
  app.add_option("-o,--output", options->output,
                 "The file to write, with --all the folder; standard output unless given");
  app.add_flag("--all", options->all, "Draw every tool, one file each");
  add_where_option(app, options->where);
  return [options](Console& console) { run(*options, console); };
}

constexpr Example kExamples[] = {
    {"tooldb draw lib D10-R2 -o d10.svg", "Draws one tool."},
    {"tooldb draw lib --all -o drawings", "Draws the whole library."},
};

}  // namespace

extern const Command kDraw;
const Command kDraw = {
    "draw",
    "Draws a tool to scale with its dimensions (SVG)",
    "The drawing is a sheet of A4: half section and half view to a usual scale, mill tip down or "
    "lathe tool tip left, with diameters, lengths from the tip, radii, angles, gauge line and "
    "programmed point, and a title block.",
    kExamples,
    declare,
    {},
};

}  // namespace tooldb

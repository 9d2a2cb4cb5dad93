#include <fmt/format.h>

#include <array>
#include <optional>

#include "apps/bodies.h"
#include "apps/command.h"
#include "apps/console.h"
#include "apps/output_file.h"
#include "apps/profile_formats.h"
#include "apps/setting_key.h"
#include "apps/tool_folder.h"

namespace tooldb {
namespace {

struct Options {
  FolderOptions folder;
  std::string code;
  std::string item;
  std::string format = "csv";
  std::string output;
  std::optional<double> tolerance;
};

std::vector<Body> chosen_bodies(const Options& options, tdbTool& tool, double tolerance) {
  std::vector<Body> bodies = bodies_of(tool, tolerance);
  if (!options.item.empty()) {
    const tdbItem& item = find_item(tool, options.item);
    std::erase_if(bodies, [&](const Body& body) { return body.item != &item; });
    if (bodies.empty()) {
      throw Failure("item '" + options.item + "' is no cutter, shank or holder");
    }
  }
  return bodies;
}

void run(const Options& options, Console& console) {
  const ProfileFormat* format = find_profile_format(options.format);
  if (format == nullptr) throw UsageError("--format is one of csv, json, svg and xml");
  ToolFolder folder(options.folder, Use::kRead, console);
  const auto tool = folder.ReadTool(options.code);
  const double tolerance = options.tolerance.value_or(fine_tolerance(*tool));
  require_tolerance(tolerance);
  std::vector<Body> bodies = chosen_bodies(options, *tool, tolerance);
  for (const auto& line : refusals("tool '" + options.code + "'", bodies)) console.Error(line);
  std::erase_if(bodies, [](const Body& body) { return body.contours.empty(); });
  if (bodies.empty()) throw Failure("tool '" + options.code + "' has no outline to write");
  write_output(options.output, format->text(bodies), console);
}

void add_arguments(CLI::App& app, Options& options) {
  add_tool_arguments(app, options.folder, options.code);
  app.add_option("--item", options.item, "Only this item")->type_name("NAME");
  app.add_option("--format", options.format, "csv (without it), json, svg or xml")
      ->type_name("FORMAT");
  app.add_option("--tolerance", options.tolerance,
                 "Largest distance of a chord from its arc; without it 0.01 mm")
      ->type_name("T");
  add_output_option(app, options.output, "The file to write");
}

constexpr Example kExamples[] = {
    {"tooldb profile lib T1", "The points of every part of T1."},
    {"tooldb profile lib T1 --item cutter --format xml", "The cutter's lines and arcs."},
};

}  // namespace

extern const Command kProfile;
const Command kProfile = {
    "profile",
    "Writes the outlines of a tool's parts",
    "Points are (distance from the part's axis, position along it), clockwise, in the tool's unit "
    "and the part's own frame.\n"
    "\n"
    "csv: a line per point with item, contour, x and y. json: a list of parts, each with item, "
    "class, revolved, placement (4 rows of 4 numbers, part to tool) and contours. svg: the parts "
    "one upon another where they stand. xml: the lines and arcs that the outline is made of; of "
    "one item only.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

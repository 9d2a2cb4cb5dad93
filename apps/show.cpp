#include <fmt/format.h>

#include <map>

#include "apps/command.h"
#include "apps/condition_slots.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/text_table.h"
#include "apps/tool_folder.h"
#include "apps/tool_json.h"
#include "apps/tree_items.h"
#include "apps/tree_text.h"
#include "tooldb/type_names.h"

namespace tooldb {
namespace {

struct Options {
  FolderOptions folder;
  std::string code;
  bool json = false;
};

void append_line(std::string& out, std::string_view label, std::string_view value) {
  if (!value.empty()) out += fmt::format("{:<14}{}\n", label, printable(value));
}

void append_head(std::string& out, tdbTool& tool) {
  const char* unit = tool.GetUnitOfMeasurement() == 0 ? "mm" : "inch";
  append_line(out, "Tool", tool.GetCode());
  append_line(out, "Name", tool.GetName());
  append_line(out, "Type", tdbGetTypeName(tool));
  append_line(out, "Description", tool.GetDescr());
  append_line(out, "Comment", tool.GetComment());
  append_line(out, "Unit", unit);
  append_line(out, "Diameter", shown_number(tool.GetDiameter()));
  append_line(
      out, "Offset",
      fmt::format("{} {} {}{}", shown_number(tool.GetOffsetX()), shown_number(tool.GetOffsetY()),
                  shown_number(tool.GetOffsetZ()), tool.GetAutoTcp() ? " (from the cutter)" : ""));
  append_line(out, "Tolerance", shown_number(tool.GetToolModelTolerance()));
  append_line(out, "Trace colour",
              std::to_string(tool.GetTraceColor()) + (tool.GetAutoColor() ? " (automatic)" : ""));
  if (tool.IsSectionEnabled()) {
    append_line(out, "Section",
                fmt::format("from {} over {} degrees", shown_number(tool.GetSectionStartAngle()),
                            shown_number(tool.GetSectionSpanAngle())));
  }
}

void append_parameters(std::string& out, const tdbTool& tool) {
  TextTable table({{"parameter", false, 12}, {"value", false, 20}});
  for (const auto& [name, value] : tool.GetParamList()) table.AddRow({name, value});
  if (!tool.GetParamList().empty()) out += '\n' + table.Text(0, false);
}

void append_offsets(std::string& out, const tdbTool& tool) {
  if (tool.GetOffsetParamCount() == 0) return;
  TextTable table({{"offset", true},
                   {"dx", true},
                   {"dy", true},
                   {"dz", true},
                   {"radius", true},
                   {"position", true},
                   {"absolute"}});
  for (const OFFSET_VALUE& o : tool.GetOffsetParamList()) {
    table.AddRow({std::to_string(o.index), shown_number(o.DX), shown_number(o.DY),
                  shown_number(o.DZ), shown_number(o.RAD), std::to_string(o.POS),
                  o.ABS ? "yes" : "no"});
  }
  out += '\n' + table.Text(0, false);
}

// One line per quantity: what stands after its last dot, with the value.
void append_conditions(std::string& out, tdbTool& tool) {
  std::vector<std::pair<std::string, std::string>> lines;
  for (const ConditionSlot& slot : condition_slots(tool)) {
    const auto dot = slot.name.rfind('.');
    const std::string head = dot == std::string::npos ? "cutting" : slot.name.substr(0, dot);
    const std::string part = slot.name.substr(dot == std::string::npos ? 0 : dot + 1);
    const std::string value = slot.kind == ConditionSlot::Kind::kFlag
                                  ? (slot.get() != 0 ? "yes" : "no")
                                  : shown_number(slot.get());
    auto line = std::ranges::find(lines, head, [](const auto& l) { return l.first; });
    if (line == lines.end()) line = lines.insert(lines.end(), {head, ""});
    line->second += (line->second.empty() ? "" : ", ") + part + ' ' + value;
  }
  out += tool.IsTurningTool() ? "\nTurning conditions\n" : "\nMilling conditions\n";
  for (const auto& [head, text] : lines) {
    std::string block = wrapped(text, 80, 28);
    block.replace(2, head.size(), head);
    out += block;
  }
}

std::string tool_text(tdbTool& tool) {
  std::string out;
  append_head(out, tool);
  append_parameters(out, tool);
  append_offsets(out, tool);
  append_conditions(out, tool);
  append_tree(out, tool);
  return out;
}

void run(const Options& options, Console& console) {
  ToolFolder folder(options.folder, Use::kRead, console);
  const auto tool = folder.ReadTool(options.code);
  console.Print(options.json ? json_text(tool_json(*tool)) : tool_text(*tool));
  for (const tdbError& error : tool->GetErrs())
    console.Warn(file_message(folder.FilePath(options.code), error));
}

void add_arguments(CLI::App& app, Options& options) {
  add_tool_arguments(app, options.folder, options.code);
  app.add_flag("--json", options.json, "Print JSON");
}

constexpr Example kExamples[] = {
    {"tooldb show lib D10", "All that is known of the tool D10."},
    {"tooldb show lib D10 --json | jq .items", "Its items, for another program."},
};

}  // namespace

extern const Command kShow;
const Command kShow = {
    "show",
    "Shows a tool with everything in it",
    "The tree of items stands at the end: what each item is, its placement in its parent where it "
    "has one, its parameters and where its geometry comes from.\n"
    "\n"
    "JSON: code, name, type, subtype, description, comment, unit, diameter, length, offset, "
    "auto_tcp, tolerance, color, auto_color, section (when it is on), placement, parameters, "
    "offsets, conditions and items. Items are a flat list, parents before their children: depth "
    "(1 for those of the tool itself), class, name, code, type, library_member, placement, "
    "parameters, model and profile. Lengths are in the tool's unit, angles in degrees.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

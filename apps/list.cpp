#include <fmt/format.h>

#include <algorithm>
#include <memory>

#include "apps/command.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/fields.h"
#include "apps/query_option.h"
#include "apps/terminal.h"
#include "apps/text_table.h"
#include "apps/tool_folder.h"
#include "apps/tool_json.h"

namespace tooldb {
namespace {

constexpr int kPlainWidth = 80;

struct Options {
  FolderOptions folder;
  std::string sort = "code";
  bool descending = false;
  std::string where;
  std::vector<std::string> columns = {"code", "kind", "diameter", "length", "units", "description"};
  bool all_columns = true;  ///< --json without --columns
  bool json = false;
  std::optional<int> width;
};

using Tools = std::vector<std::unique_ptr<tdbTool>>;

// The library's own order of codes: 9 before 10, and A before b.
void sort_by_code(Tools& tools) {
  tdbToolDB listed("list", 1);
  tdbError error;
  for (auto& tool : tools) listed.AddTool(tool.release(), error, false);
  listed.Sort(0, true);
  for (auto& tool : tools) {
    tool.reset(listed.GetTool(0, 1));
    listed.RemoveTool(tool.get(), error);
  }
}

void sort_tools(Tools& tools, const Options& options) {
  sort_by_code(tools);
  if (lower_text(options.sort) != "code") {
    const auto order = [&](const auto& a, const auto& b) {
      return compare_values(field_value(*a, options.sort), field_value(*b, options.sort)) < 0;
    };
    std::ranges::stable_sort(tools, order);
  }
  if (options.descending) std::ranges::reverse(tools);
}

TextTable::Column column_of(const std::string& name) {
  const Field* field = find_field(name);
  if (field == nullptr) return {name, false, 8};
  return {name, field->kind != FieldKind::kText, field->least};
}

std::string table_text(const Tools& tools, const Options& options, const Console& console) {
  std::vector<TextTable::Column> columns;
  for (const auto& name : options.columns) columns.push_back(column_of(name));
  TextTable table(columns);
  for (const auto& tool : tools) {
    std::vector<std::string> cells;
    for (const auto& name : options.columns) {
      const auto value = field_value(*tool, name);
      cells.push_back(value ? value->text : "");
    }
    table.AddRow(cells);
  }
  return table.Text(options.width.value_or(terminal_width().value_or(kPlainWidth)),
                    console.UsesColor());
}

nlohmann::ordered_json json_value(const std::optional<FieldValue>& value,
                                  std::optional<FieldKind> kind) {
  if (!value) return nullptr;
  if (kind != FieldKind::kText && value->number) return number_json(*value->number);
  return value->text;
}

std::string list_json(const Tools& tools, const Options& options) {
  std::vector<std::string> names = options.columns;
  if (options.all_columns) {
    names.clear();
    for (const Field& field : fields()) names.emplace_back(field.name);
  }
  auto list = nlohmann::ordered_json::array();
  for (const auto& tool : tools) {
    auto& row = list.emplace_back(nlohmann::ordered_json::object());
    for (const auto& name : names) {
      row[name] = json_value(field_value(*tool, name), field_kind(name));
    }
  }
  return json_text(list);
}

void check_options(const Options& options) {
  require_field("--sort", options.sort);
  for (const auto& name : options.columns) require_field("--columns", name);
  if (options.width.value_or(0) < 0) throw UsageError("--width must not be negative");
}

void run(const Options& options, Console& console) {
  check_options(options);
  const auto selected = tool_filter(options.where);
  ToolFolder folder(options.folder, Use::kRead, console);
  Tools tools = folder.ReadAll();
  std::erase_if(tools, [&](const auto& tool) { return !selected(*tool); });
  sort_tools(tools, options);
  if (options.json) return console.Print(list_json(tools, options));
  if (tools.empty()) return console.Note("no tools");
  console.Print(table_text(tools, options, console));
}

void add_arguments(CLI::App& app, Options& options) {
  add_folder_arguments(app, options.folder);
  app.add_option("--sort", options.sort, "Field to sort by; without it the code")
      ->type_name("FIELD");
  app.add_flag("--desc", options.descending, "Sort from large to small");
  add_where_option(app, options.where);
  app.add_option("--columns", options.columns, "Fields to show, separated by commas")
      ->type_name("FIELD,...")
      ->delimiter(',')
      ->each([&options](const std::string&) { options.all_columns = false; });
  app.add_flag("--json", options.json, "Print JSON: an array with an object per tool");
  app.add_option("--width", options.width,
                 "Width to fit the table to; 0: cut nothing; without it that of the terminal, else "
                 "80")
      ->type_name("N");
}

constexpr Example kExamples[] = {
    {"tooldb list lib", "Lists the library in the folder lib."},
    {"tooldb list lib --sort diameter --desc", "The largest tools first."},
    {"tooldb list lib --where \"kind ~ drill and diameter < 5mm\"",
     "Drills below 5 mm, those in inches too."},
    {"tooldb list lib --columns code,cutter.FILLET,holders --json", "Three fields, as JSON."},
};

}  // namespace

extern const Command kList;
const Command kList = {
    "list",
    "Lists the tools of a folder",
    "Fields: code, name, type, kind, diameter, length, units, description, comment, teeth, "
    "cutters, shanks, holders, components, offsets, offset_x, offset_y, offset_z, auto_tcp, "
    "tolerance, color, subtype; param.NAME, a parameter of the tool; cutter.NAME, shank.NAME and "
    "holder.NAME, a parameter of the first such item.\n"
    "\n"
    "An expression after --where compares fields with values by = != < <= > >= and ~ (contains) "
    "and joins comparisons by and, or, not and parentheses. Texts with blanks stand in quotes; "
    "case does not matter. A number may name its unit, as in \"diameter > 10mm\"; without one it "
    "is in the unit of each tool. A field alone asks whether it has a value.\n"
    "\n"
    "JSON has numbers as they are stored, and null where a tool has no such parameter. Lengths "
    "are in the tool's unit, in the table too. A file that cannot be read is reported; the others "
    "are listed.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

#include "apps/command.h"
#include "apps/console.h"
#include "apps/settings.h"
#include "apps/text_rules.h"
#include "apps/tool_folder.h"
#include "apps/tree_items.h"
#include "tooldb/profile.h"

namespace tooldb {
namespace {

struct Options {
  FolderOptions folder;
  std::string code;
  std::vector<std::string> settings;
  std::vector<std::string> unset;
  bool force = false;
  bool dry_run = false;
};

// Why parts of the tool have no outline, in the order of its items.
std::vector<std::string> refusals_of(tdbTool& tool) {
  std::vector<std::string> refusals;
  for (const TreeItem& entry : items_below(tool)) {
    refusals.push_back(tdbProfile::OutlineError(*entry.item));
  }
  return refusals;
}

// A change must not take its outline from a part that had one.
void require_outlines(tdbTool& tool, const std::vector<std::string>& before) {
  const auto items = items_below(tool);
  const auto after = refusals_of(tool);
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (after[i].empty() || !before[i].empty()) continue;
    throw Failure(std::string(class_name(*items[i].item)) + " '" + items[i].item->GetName() +
                  "' would have no outline: " + after[i] + " (--force writes it all the same)");
  }
}

void run(const Options& options, Console& console) {
  if (options.settings.empty() && options.unset.empty()) {
    throw UsageError("nothing to set: give KEY=VALUE or --unset KEY");
  }
  ToolFolder folder(options.folder, Use::kWrite, console);
  const ToolToEdit edited = folder.ReadToEdit(options.code);
  tdbTool& tool = *edited.tool;
  const auto refusals = refusals_of(tool);
  std::vector<std::string> changes;
  for (const auto& setting : options.settings) changes.push_back(apply_setting(tool, setting));
  for (const auto& key : options.unset) changes.push_back(remove_setting(tool, key));
  tool.SetModified(true);
  tool.Update();
  require_storable(tool);
  if (!options.force) require_outlines(tool, refusals);
  if (!options.dry_run) {
    if (!options.force) folder.CheckUnchanged(edited);
    folder.Update(tool);
  }
  for (const auto& change : changes) console.Note(change);
  if (options.dry_run) console.Note("nothing was written");
}

void add_arguments(CLI::App& app, Options& options) {
  add_tool_arguments(app, options.folder, options.code);
  app.add_option("KEY=VALUE", options.settings, "What to set, see below");
  app.add_option("--unset", options.unset, "Remove a parameter or an offset record")
      ->type_name("KEY")
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  app.add_flag(
      "--force", options.force,
      "Write even if a part loses its outline, or someone else changed the file meanwhile");
  app.add_flag("--dry-run", options.dry_run, "Say what would change, but write nothing");
}

constexpr Example kExamples[] = {
    {"tooldb set lib T1 description=\"End mill 10\" units=inch", "Two values of the tool."},
    {"tooldb set lib T1 cutter.DIAMETER=12 shank.type=CONE",
     "Parameters and type of the cutter and the shank."},
    {"tooldb set lib T1 param.MAKER=Acme conditions.inserts=3 offset.1.DZ=120.5",
     "A parameter of the tool, a cutting condition, an offset."},
};

}  // namespace

extern const Command kSet;
const Command kSet = {
    "set",
    "Changes values of a tool",
    "Keys of the tool: name, description, comment, units (mm or inch; numbers stay as they are), "
    "type, subtype, tolerance, color, auto_color, auto_tcp, diameter, length, offset_x, offset_y, "
    "offset_z, section (on or off), section_start, section_span; param.NAME, a parameter of the "
    "tool; offset.N.DX and so on (DX, DY, DZ, RAD, POS, ABS), a field of its offset record N; "
    "conditions.NAME, a cutting condition as \"tooldb show\" names it.\n"
    "\n"
    "Keys of an item: ITEM.NAME, a parameter; ITEM.name, ITEM.type, ITEM.position=X,Y,Z, "
    "ITEM.angles=Z,Y,X (degrees), ITEM.file, ITEM.file_units, ITEM.profile, ITEM.spinning. ITEM "
    "is the item's name, or cutter, shank, holder, link or tool for the only item of that kind; "
    "with several of one name it is NAME#2 and so on, in the order in which show lists them. "
    "Quotes around a name with dots: \"'my.item'.DIAMETER=12\".\n"
    "\n"
    "All or nothing: when one value is refused, nothing is written. Texts with <, & or a straight "
    "double quote are refused, since files cannot hold them.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

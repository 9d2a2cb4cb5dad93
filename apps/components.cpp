#include <fmt/format.h>

#include <memory>

#include "apps/command.h"
#include "apps/component_folder.h"
#include "apps/component_uses.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/settings.h"
#include "apps/terminal.h"
#include "apps/text_rules.h"
#include "apps/text_table.h"
#include "apps/tool_json.h"
#include "apps/tree_items.h"
#include "apps/tree_text.h"

namespace tooldb {
namespace {

struct Options {
  ComponentOptions place;
  std::string code;
  std::string new_code;
  std::vector<std::string> codes;
  std::vector<std::string> settings;
  bool json = false;
  bool force = false;
};

std::string items_text(tdbToolComponent& component) {
  std::string text;
  for (const TreeItem& entry : items_below(component)) {
    text += fmt::format("{}{} '{}'", text.empty() ? "" : ", ", class_name(*entry.item),
                        entry.item->GetName());
  }
  return text;
}

nlohmann::ordered_json component_json(tdbToolComponent& component) {
  return {{"code", component.GetCode()},
          {"name", component.GetName()},
          {"version", component.GetVersion()},
          {"items", items_json(component)}};
}

void list(const Options& options, Console& console) {
  ComponentFolder folder(options.place.folder, Use::kRead, console);
  if (options.json) {
    auto all = nlohmann::ordered_json::array();
    for (tdbToolComponent* component : folder.All()) all.push_back(component_json(*component));
    return console.Print(json_text(all));
  }
  TextTable table({{"code", false, 8}, {"name", false, 8}, {"items", false, 20}});
  for (tdbToolComponent* component : folder.All()) {
    table.AddRow({component->GetCode(), component->GetName(), items_text(*component)});
  }
  if (folder.All().empty()) return console.Note("no components");
  console.Print(table.Text(terminal_width().value_or(80), console.UsesColor()));
}

void show(const Options& options, Console& console) {
  ComponentFolder folder(options.place.folder, Use::kRead, console);
  tdbToolComponent& component = folder.Require(options.code);
  if (options.json) return console.Print(json_text(component_json(component)));
  std::string text = fmt::format("Component  {}\nName       {}\n", printable(component.GetCode()),
                                 printable(component.GetName()));
  append_tree(text, component);
  console.Print(text);
}

void remove_one(const Options& options, const std::string& code, ComponentFolder& folder,
                Console& console) {
  folder.Require(code);
  const auto users = tools_using(options.place, code, console);
  if (!users.empty() && !options.force) {
    throw Failure(fmt::format("component '{}' is used by {}: {}; --force removes it all the same",
                              code, counted(users.size(), "tool"), fmt::join(users, ", ")));
  }
  folder.Remove(code);
  console.Note("removed " + code);
}

void remove(const Options& options, Console& console) {
  ComponentFolder folder(options.place.folder, Use::kWrite, console);
  for (const auto& code : options.codes) {
    try {
      remove_one(options, code, folder, console);
    } catch (const Failure& failure) {
      console.Error(failure.what());
    }
  }
}

std::unique_ptr<tdbToolComponent> copy_as(const tdbToolComponent& component,
                                          const std::string& code, const ComponentFolder& folder) {
  auto copy = std::make_unique<tdbToolComponent>(component);
  copy->SetCode(code);
  require_storable(*copy);
  if (folder.HasFile(code)) {
    throw Failure("there is a component '" + code + "' already: " + folder.FilePath(code));
  }
  return copy;
}

// The old one goes last: whatever stops the change, every tool finds its component.
void rename(const Options& options, Console& console) {
  ComponentFolder folder(options.place.folder, Use::kWrite, console);
  folder.Require(options.code);
  const ComponentToEdit edited = folder.ReadToEdit(options.code);
  folder.Write(copy_as(*edited.component, options.new_code, folder));
  const std::size_t tools = redirect_uses(options.place, options.code, options.new_code, console);
  if (!options.force) folder.CheckUnchanged(edited);
  folder.Remove(options.code);
  console.Note(fmt::format("renamed {} to {}; {} changed", options.code, options.new_code,
                           counted(tools, "tool")));
}

void clone(const Options& options, Console& console) {
  ComponentFolder folder(options.place.folder, Use::kWrite, console);
  folder.Write(copy_as(folder.Require(options.code), options.new_code, folder));
  console.Note("copied " + options.code + " to " + options.new_code);
}

void set(const Options& options, Console& console) {
  ComponentFolder folder(options.place.folder, Use::kWrite, console);
  folder.Require(options.code);
  ComponentToEdit edited = folder.ReadToEdit(options.code);
  std::vector<std::string> changes;
  for (const auto& setting : options.settings) {
    changes.push_back(apply_item_setting(*edited.component, setting));
  }
  require_storable(*edited.component);
  if (!options.force) folder.CheckUnchanged(edited);
  folder.Write(std::move(edited.component));
  for (const auto& change : changes) console.Note(change);
}

void add_list_arguments(CLI::App& app, Options& options) {
  add_component_arguments(app, options.place);
  app.add_flag("--json", options.json, "Print JSON");
}

void add_code_arguments(CLI::App& app, Options& options) {
  add_component_arguments(app, options.place);
  app.add_option("CODE", options.code, "The component's code")->required();
}

void add_show_arguments(CLI::App& app, Options& options) {
  add_code_arguments(app, options);
  app.add_flag("--json", options.json, "Print JSON");
}

void add_set_arguments(CLI::App& app, Options& options) {
  add_code_arguments(app, options);
  app.add_option("ITEM.KEY=VALUE", options.settings, "What to set")->required();
  add_force_option(app, options.force);
}

void add_clone_arguments(CLI::App& app, Options& options) {
  add_code_arguments(app, options);
  app.add_option("NEWCODE", options.new_code, "The new code")->required();
}

void add_rename_arguments(CLI::App& app, Options& options) {
  add_clone_arguments(app, options);
  add_library_option(app, options.place);
  add_force_option(app, options.force);
}

void add_remove_arguments(CLI::App& app, Options& options) {
  add_component_arguments(app, options.place);
  app.add_option("CODE", options.codes, "Codes of the components")->required();
  add_library_option(app, options.place);
  app.add_flag("--force", options.force, "Remove components that are used");
}

constexpr Example kListExamples[] = {
    {"tooldb components list lib/components", "Lists the components of the library lib."}};
constexpr Example kSetExamples[] = {
    {"tooldb components set lib/components HSK63 holder.DIAMETER=60", "A slimmer holder."}};
constexpr Example kRenameExamples[] = {{"tooldb components rename lib/components HSK63 HSK63A",
                                        "The tools of lib use HSK63A from now on."}};
constexpr Example kRemoveExamples[] = {
    {"tooldb components remove lib/components HSK63", "Refused while a tool of lib uses it."}};

const Command kListComponents = {
    "list",
    "Lists the components of a folder",
    "JSON: a list of what \"tooldb components show\" has of each.",
    kListExamples,
    declare<Options, add_list_arguments, list>,
    {},
};
const Command kShowComponent = {
    "show",
    "Shows a component with everything in it",
    "JSON: code, name, version and items, as \"tooldb show\" has them.",
    {},
    declare<Options, add_show_arguments, show>,
    {},
};
const Command kSetComponent = {
    "set",
    "Changes values of a component's items",
    "Keys are those of items in \"tooldb set\". Every tool that uses the component has the change.",
    kSetExamples,
    declare<Options, add_set_arguments, set>,
    {},
};
const Command kCloneComponent = {
    "clone", "Copies a component within its folder",       "",
    {},      declare<Options, add_clone_arguments, clone>, {},
};
const Command kRenameComponent = {
    "rename",
    "Gives a component another code",
    "The tools of the library that use it follow.",
    kRenameExamples,
    declare<Options, add_rename_arguments, rename>,
    {},
};
const Command kRemoveComponent = {
    "remove",
    "Deletes components",
    "A component that a tool of the library uses is refused without --force; the tools would then "
    "refer to nothing, as \"tooldb check\" tells.",
    kRemoveExamples,
    declare<Options, add_remove_arguments, remove>,
    {},
};

constexpr const Command* kGroup[] = {&kListComponents, &kShowComponent,   &kSetComponent,
                                     &kCloneComponent, &kRenameComponent, &kRemoveComponent};

}  // namespace

extern const Command kComponents;
const Command kComponents = {
    "components",
    "Looks after the components that tools share",
    "Components are assemblies, such as holders, that many tools use. They lie in a folder of "
    "their own, most often \"components\" inside the library. \"tooldb add\" puts component files "
    "there.",
    {},
    nullptr,
    kGroup,
};

}  // namespace tooldb

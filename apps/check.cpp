#include <fmt/format.h>

#include <array>
#include <memory>

#include "apps/checks/check_files.h"
#include "apps/checks/check_item.h"
#include "apps/checks/check_rules.h"
#include "apps/checks/repair.h"
#include "apps/command.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/progress.h"
#include "apps/tool_folder.h"
#include "apps/tool_json.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

struct Options {
  std::vector<std::string> folders;
  std::string components;
  bool json = false;
  bool repair = false;
};

struct Counts {
  std::size_t tools = 0;
  std::size_t components = 0;
};

void check_tool(tdbTool& tool, const std::string& path, Findings& findings) {
  const CheckedFile file(path);
  const std::vector<Body> bodies = bodies_of(tool, fine_tolerance(tool));
  check_contents(tool, bodies, file, findings);
  check_assembly(tool, bodies, file, findings);
}

void add_unreadable(const std::string& path, const tdbError& error, Findings& findings) {
  findings.Add(rule::kUnreadable, path, line_in(error.message), error.message);
}

void check_component(ComponentFolder& folder, const std::string& name, Findings& findings) {
  const std::string path = folder.Path() + '/' + name;
  tdbError error;
  const std::unique_ptr<tdbToolComponent> component(
      tdbXmlReader::ReadToolComponent(path.c_str(), {folder.Path()}, error, &folder.Database()));
  if (component == nullptr) return add_unreadable(path, error, findings);
  component->SetItemComponent(true);
  const std::vector<Body> bodies = bodies_of(*component, fine_tolerance(*component));
  check_contents(*component, bodies, CheckedFile(path), findings);
}

void check_folder(const Options& options, const std::string& path, Counts& counts,
                  Findings& findings, Console& console) {
  // What cannot be read is found here, with its place; the folder need not tell too.
  Console silent;
  silent.Mute();
  ToolFolder folder({path, options.components}, options.repair ? Use::kWrite : Use::kRead, silent);
  const auto names = folder.FileNames();
  std::vector<std::string> component_names;
  if (folder.Components() != nullptr) component_names = folder.Components()->FileNames();
  Progress progress(console, "checking", names.size() + component_names.size());
  check_file_names(folder.Path(), names, findings);
  folder.ReadFiles(names, [&](const std::string& name, auto tool, const tdbError& error) {
    const std::string file = folder.Path() + '/' + name;
    if (tool == nullptr) {
      add_unreadable(file, error, findings);
    } else {
      check_tool(*tool, file, findings);
    }
    progress.Step();
  });
  counts.tools += names.size();
  if (folder.Components() == nullptr) return;
  check_file_names(folder.Components()->Path(), component_names, findings);
  for (const auto& name : component_names) {
    check_component(*folder.Components(), name, findings);
    progress.Step();
  }
  counts.components += component_names.size();
}

std::string_view name_of(Finding::Severity severity) {
  return severity == Finding::Severity::kError ? "error" : "warning";
}

// The reader's messages name the file and the line, which stand before them already.
std::string message_of(const Finding& finding) {
  std::string_view message = finding.message;
  for (const auto& known : {finding.path + ": ", fmt::format("line {}: ", finding.line)}) {
    if (message.starts_with(known)) message.remove_prefix(known.size());
  }
  return std::string(message);
}

std::string text_of(const Finding& finding) {
  const std::string line = finding.line > 0 ? fmt::format(":{}", finding.line) : "";
  return fmt::format("{}{}: {} [{}] {}\n    {}\n", printable(finding.path), line,
                     name_of(finding.severity), finding.rule, printable(message_of(finding)),
                     finding.repair.empty() ? finding.remedy : printable(finding.repair));
}

nlohmann::ordered_json json_of(const Finding& finding) {
  nlohmann::ordered_json object = {
      {"file", finding.path},
      {"line", finding.line > 0 ? nlohmann::ordered_json(finding.line) : nullptr},
      {"severity", name_of(finding.severity)},
      {"rule", finding.rule},
      {"message", message_of(finding)},
      {"remedy", finding.remedy}};
  if (!finding.repair.empty()) object["repaired"] = finding.repair;
  return object;
}

void print_findings(const Findings& findings, bool json, Console& console) {
  if (json) {
    auto list = nlohmann::ordered_json::array();
    for (const Finding& finding : findings.All()) list.push_back(json_of(finding));
    return console.Print(json_text(list));
  }
  for (const Finding& finding : findings.All()) console.Print(text_of(finding));
}

std::size_t count(const Findings& findings, Finding::Severity severity) {
  return static_cast<std::size_t>(std::ranges::count_if(findings.All(), [&](const Finding& f) {
    return f.severity == severity && f.repair.empty();
  }));
}

void run(const Options& options, Console& console) {
  Findings findings;
  Counts counts;
  for (const auto& path : options.folders) {
    try {
      check_folder(options, path, counts, findings, console);
    } catch (const Failure& failure) {
      console.Error(failure.what());
    }
  }
  if (options.repair) repair(findings);
  print_findings(findings, options.json, console);
  const std::size_t errors = count(findings, Finding::Severity::kError);
  console.Note(fmt::format("checked {} and {}: {}, {}", counted(counts.tools, "tool"),
                           counted(counts.components, "component"), counted(errors, "error"),
                           counted(count(findings, Finding::Severity::kWarning), "warning")));
  if (errors > 0) console.Fail();
}

void add_arguments(CLI::App& app, Options& options) {
  app.add_option("FOLDER", options.folders, "Library folders")->required();
  app.add_option("--components", options.components,
                 "Folder of the library components; without it \"components\" in each FOLDER")
      ->type_name("DIR");
  app.add_flag("--json", options.json, "Print JSON");
  app.add_flag(
      "--repair", options.repair,
      "Rename files to what their codes are written as, and move files that cannot be read "
      "to \"lost+found\" in FOLDER");
}

constexpr Example kExamples[] = {
    {"tooldb check lib", "Checks every file of the library lib."},
    {"tooldb check lib1 lib2 --json", "Both, for another program."},
    {"tooldb check lib --repair", "Takes out of the way what cannot be read."},
};

}  // namespace

extern const Command kCheck;
const Command kCheck = {
    "check",
    "Finds what is wrong in libraries",
    "Every file is checked: that it can be read, that its name is what its code is written as, "
    "that no two codes are the same but for case, that texts hold nothing that files cannot hold, "
    "that components and model files are there, that every part has an outline, which does not "
    "cross itself, and that the parts of a tool meet: no gap, no overlap, no shank wider than "
    "its holder. Each finding names the file, the line where it is known, the rule in brackets, "
    "and what to do.\n"
    "\n"
    "--repair deletes and overwrites nothing: a file goes to lost+found under its name beside a "
    "\".txt\" that says why. A file that the disk withholds, and whatever else is found, stays as "
    "it "
    "is.\n"
    "\n"
    "The exit code is 1 when there is an error that was not repaired; warnings alone give 0. JSON: "
    "a "
    "list of findings, each with file, line (or null), severity, rule, message and remedy, and "
    "repaired, what was done, where something was.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

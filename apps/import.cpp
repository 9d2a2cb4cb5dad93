#include "apps/command.h"
#include "apps/console.h"
#include "apps/intake.h"
#include "apps/intake_report.h"
#include "apps/tool_folder.h"

namespace tooldb {
namespace {

struct Options {
  FolderOptions folder;
  std::vector<std::string> files;
  IntakePolicy policy;
  ReportOptions report;
};

void run(const Options& options, Console& console) {
  const auto use = options.policy.dry_run ? Use::kRead : Use::kWrite;
  ToolFolder folder(options.folder, use, console);
  print_report(take_in(find_sources(options.files), folder, options.policy, console),
               options.report, console);
  if (options.policy.dry_run) console.Note("nothing was written");
}

void add_common_arguments(CLI::App& app, Options& options) {
  add_folder_arguments(app, options.folder);
  app.add_option("FILE", options.files, "Files, and folders of them")->required();
  app.add_flag("--dry-run", options.policy.dry_run, "Report what would happen, but write nothing");
  add_report_options(app, options.report);
}

void add_import_arguments(CLI::App& app, Options& options) {
  add_common_arguments(app, options);
  app.add_flag("--update", options.policy.update, "Replace tools that the file has changed");
}

void add_add_arguments(CLI::App& app, Options& options) {
  add_common_arguments(app, options);
  options.policy.own_only = true;
  options.policy.rewrite_texts = false;
  app.add_flag("--replace", options.policy.update, "Replace tools that the folder has already");
}

constexpr Example kAddExamples[] = {
    {"tooldb add lib T1.ktf", "Adds a tool file."},
    {"tooldb add lib export.xml other-lib --replace",
     "Adds all tools of an export and of another folder, over those of the same code."},
};

constexpr Example kImportExamples[] = {
    {"tooldb import lib tools.json --dry-run", "Tells what the import would do."},
    {"tooldb import lib bits/ --brief", "Imports a folder of bits and libraries."},
    {"tooldb import lib tools.json --update", "Takes over what changed in the file since."},
};

}  // namespace

extern const Command kAdd;
const Command kAdd = {
    "add",
    "Adds tool files and exports to a folder",
    "Takes tool files (.ktf), component files (.ktcf, into the components folder) and exported "
    "documents. A tool whose code the folder has already is refused, unless its content is the "
    "same or --replace is given. Texts that files cannot hold are refused.",
    kAddExamples,
    declare<Options, add_add_arguments, run>,
    {},
};

extern const Command kImport;
const Command kImport = {
    "import",
    "Imports tools, also from other programs' files",
    "Takes what \"tooldb add\" takes, and the files of other programs: tool libraries in JSON "
    "(.json, .tools, .fctl), bits (.fctb) and holders (.fcholder). The kind of a file is found by "
    "its content.\n"
    "\n"
    "The report accounts for every file and every tool: new, same, changed, updated, refused, or "
    "absent where a library names a bit that is not beside it; and for values: mapped, "
    "approximated (and why), kept as a parameter, not representable. "
    "Missing are tools that came from a file before and are not in it any more; they are kept. A "
    "tool is recognised by the identity that its file gives it, else by its code. A tool that "
    "changed is left as it is without --update.\n"
    "\n"
    "The characters <, & and the straight double quote, which tool files cannot hold, become their "
    "full-width forms; the report tells where. JSON: a list of files, each with file, format, "
    "refused, notes, entries (outcome, class, code, description, source, reason, notes) and "
    "missing.",
    kImportExamples,
    declare<Options, add_import_arguments, run>,
    {},
};

}  // namespace tooldb

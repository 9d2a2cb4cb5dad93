#include "apps/intake_report.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "apps/console.h"
#include "apps/database_folder.h"
#include "apps/display_text.h"
#include "apps/tool_json.h"

namespace tooldb {
namespace {

constexpr std::array<std::string_view, 6> kOutcomeNames = {"new",     "same",    "changed",
                                                           "updated", "refused", "absent"};

std::string_view name_of(Outcome outcome) {
  return kOutcomeNames[static_cast<std::size_t>(outcome)];
}

constexpr int kWidth = 80;

void append_notes(std::string& out, const std::vector<ImportNote>& notes, int indent) {
  for (const ImportNote& note : notes) {
    const std::string text = fmt::format("{}: {}", note_kind_name(note.kind), note.text);
    out += wrapped(printable(text), kWidth, indent);
  }
}

void append_line(std::string& out, const IntakeLine& line, bool brief) {
  const std::string what = line.is_component ? "component " : "";
  std::string head = fmt::format("  {:<8} {}{}", name_of(line.outcome), what,
                                 line.code.empty() ? line.source : line.code);
  if (!line.description.empty()) head += "  " + line.description;
  out += cut_to_width(printable(head), kWidth) + '\n';
  if (!line.reason.empty()) out += wrapped(printable(line.reason), kWidth, 11);
  if (!brief) append_notes(out, line.notes, 11);
}

void append_file(std::string& out, const IntakeFile& file, bool brief) {
  const std::string format = file.format.empty() ? "no tool file" : file.format;
  out += printable(fmt::format("{} ({})", file.path, format)) + '\n';
  if (!brief || file.is_refused) append_notes(out, file.notes, 2);
  for (const IntakeLine& line : file.lines) append_line(out, line, brief);
  for (const auto& code : file.missing) {
    out += printable(fmt::format("  {:<8} {}", "missing", code)) + '\n';
    out += wrapped("it came from this file before and is not in it now; it is kept", kWidth, 11);
  }
}

struct Totals {
  std::array<std::size_t, kOutcomeNames.size()> outcomes{};
  std::size_t missing = 0;
  std::size_t refused_files = 0;
  std::size_t other_files = 0;
};

Totals totals_of(const std::vector<IntakeFile>& files) {
  Totals totals;
  for (const IntakeFile& file : files) {
    for (const IntakeLine& line : file.lines) {
      ++totals.outcomes[static_cast<std::size_t>(line.outcome)];
    }
    totals.missing += file.missing.size();
    if (file.is_refused) ++totals.refused_files;
    if (file.format.empty() && !file.is_refused) ++totals.other_files;
  }
  return totals;
}

std::string summary(const std::vector<IntakeFile>& files) {
  const Totals totals = totals_of(files);
  std::string text = counted(files.size(), "file") + ':';
  for (std::size_t i = 0; i < kOutcomeNames.size(); ++i) {
    if (i == static_cast<std::size_t>(Outcome::kAbsent) && totals.outcomes[i] == 0) continue;
    text += fmt::format(" {} {},", totals.outcomes[i], kOutcomeNames[i]);
  }
  text += fmt::format(" {} missing", totals.missing);
  if (totals.refused_files > 0) text += "; not read: " + counted(totals.refused_files, "file");
  if (totals.other_files > 0) text += "; no tool files: " + counted(totals.other_files, "file");
  text += '\n';
  return text;
}

nlohmann::ordered_json notes_json(const std::vector<ImportNote>& notes) {
  auto list = nlohmann::ordered_json::array();
  for (const ImportNote& note : notes) {
    list.push_back({{"kind", note_kind_name(note.kind)}, {"text", note.text}});
  }
  return list;
}

nlohmann::ordered_json file_json(const IntakeFile& file) {
  auto entries = nlohmann::ordered_json::array();
  for (const IntakeLine& line : file.lines) {
    entries.push_back({{"outcome", name_of(line.outcome)},
                       {"class", line.is_component ? "component" : "tool"},
                       {"code", line.code},
                       {"description", line.description},
                       {"source", line.source},
                       {"reason", line.reason},
                       {"notes", notes_json(line.notes)}});
  }
  return {{"file", file.path},          {"format", file.format},
          {"refused", file.is_refused}, {"notes", notes_json(file.notes)},
          {"entries", entries},         {"missing", file.missing}};
}

// What the file names and is not there: of no concern to what was taken, unless it is everything.
void print_absent(const IntakeFile& file, Console& console) {
  const auto absent = std::ranges::count(file.lines, Outcome::kAbsent, &IntakeLine::outcome);
  if (absent == 0) return;
  const std::string text = fmt::format(
      "{}: {} of the {} that it names are not beside it; put them there and import it again",
      file.path, absent, counted(file.lines.size(), "tool"));
  if (static_cast<std::size_t>(absent) == file.lines.size()) {
    console.Error(text);
  } else {
    console.Warn(text);
  }
}

void print_errors(const std::vector<IntakeFile>& files, Console& console) {
  for (const IntakeFile& file : files) {
    for (const ImportNote& note : file.notes) {
      if (note.kind != NoteKind::kFailed) continue;
      console.Error(file_message(file.path, tdbError(1, note.text)));
    }
    for (const IntakeLine& line : file.lines) {
      if (line.outcome != Outcome::kRefused) continue;
      const std::string& why = !line.reason.empty() ? line.reason
                               : line.notes.empty() ? "it could not be read"
                                                    : line.notes.front().text;
      console.Error(
          fmt::format("{}: {}: {}", file.path, line.source.empty() ? line.code : line.source, why));
    }
    print_absent(file, console);
  }
}

}  // namespace

void add_report_options(CLI::App& app, ReportOptions& options) {
  app.add_flag("--json", options.json, "Print the report as JSON");
  app.add_flag("--brief", options.brief, "One line per tool, without what became of its values");
}

void print_report(const std::vector<IntakeFile>& files, const ReportOptions& options,
                  Console& console) {
  if (options.json) {
    auto list = nlohmann::ordered_json::array();
    for (const IntakeFile& file : files) list.push_back(file_json(file));
    console.Print(json_text(list));
  } else {
    std::string out;
    for (const IntakeFile& file : files) append_file(out, file, options.brief);
    console.Print(out + summary(files));
  }
  print_errors(files, console);
}

}  // namespace tooldb

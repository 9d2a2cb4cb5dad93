#include <optional>
#include <utility>

#include "filters/freecad.h"
#include "filters/plain_text.h"

namespace tooldb {
namespace {

constexpr std::string_view kBitFolder = "../Bit/";

/// A path below the library's folders; nothing for one that would lead out of them.
std::optional<std::string> checked_path(std::string path) {
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  const bool leads_out = path.empty() || path.front() == '/' || path.starts_with("../") ||
                         path.find("/../") != std::string::npos ||
                         path.find(':') != std::string::npos;
  return leads_out ? std::nullopt : std::optional(std::move(path));
}

class LibraryReader {
 public:
  LibraryReader(const std::string& file_name, const SiblingReader& siblings, ImportResult& result)
      : file_name_(file_name), siblings_(siblings), result_(result) {}

  void Read(const Json& document);

 private:
  void ReadTool(const Json& reference);
  /// The bytes of a bit: from the folder of bits beside the library's, or from the library's own.
  std::optional<std::string> ReadBit(const std::string& path);
  void AddNumber(JsonFields& fields, ImportEntry& entry) const;

  const std::string& file_name_;
  const SiblingReader& siblings_;
  ImportResult& result_;
  std::string label_;
};

void LibraryReader::Read(const Json& document) {
  JsonFields fields(document);
  label_ = fields.Text("label");
  if (label_.empty()) label_ = without_extension(last_path_part(file_name_));
  const Json* tools = fields.Read("tools");
  if (tools == nullptr || !tools->is_array()) {
    result_.notes.push_back(
        {NoteKind::kFailed, file_name_ + ": no list of tools: this is no tool library"});
    return;
  }
  for (const Json& reference : *tools) ReadTool(reference);
}

std::optional<std::string> LibraryReader::ReadBit(const std::string& path) {
  if (!siblings_) return std::nullopt;
  for (const std::string& candidate : {std::string(kBitFolder) + path, path}) {
    std::optional<std::string> bytes = siblings_(candidate);
    if (!bytes) continue;
    result_.siblings.push_back(candidate);
    return bytes;
  }
  return std::nullopt;
}

void LibraryReader::ReadTool(const Json& reference) {
  JsonFields fields(reference);
  const std::string named = fields.Text("path");
  const std::optional<std::string> path = checked_path(named);
  const std::optional<std::string> bytes = path ? ReadBit(*path) : std::nullopt;
  ImportEntry entry;
  if (bytes) {
    entry = import_freecad_bit(*bytes, *path);
    if (entry.tool) AddNumber(fields, entry);
  } else {
    entry.notes.push_back(path ? ImportNote{NoteKind::kAbsent, "the bit is not beside the library"}
                               : ImportNote{NoteKind::kFailed, "that is no path of a bit"});
  }
  entry.source = file_name_ + ": number " + fields.Text("nr") + ", " +
                 (named.empty() ? "without a path" : named);
  result_.entries.push_back(std::move(entry));
}

void LibraryReader::AddNumber(JsonFields& fields, ImportEntry& entry) const {
  const auto keep = [&entry](const std::string& name, std::string_view value) {
    entry.tool->AddParam(storable_line(name).c_str(), storable_text(value).c_str());
  };
  keep("FREECAD.library", label_);
  const std::optional<double> number = fields.Number("nr");
  if (number && *number >= 0 && *number <= 1e9) {
    OFFSET_VALUE offset;
    offset.index = static_cast<int>(*number);
    offset.RAD = entry.tool->GetDiameter() / 2;
    entry.tool->AddOffsetParam(offset.index, offset);
    keep("FREECAD.nr", fields.Text("nr"));
    entry.notes.push_back(
        {NoteKind::kMapped, "number " + fields.Text("nr") + " of the library as offset record"});
  }
  fields.KeepUnread("FREECAD.library", keep);
}

}  // namespace

bool fits_freecad_library(std::string_view bytes) {
  return bytes.find("\"tools\"") != std::string_view::npos &&
         bytes.find(".fctb\"") != std::string_view::npos;
}

void read_freecad_library(std::string_view bytes, const std::string& file_name,
                          const SiblingReader& siblings, ImportResult& result) {
  std::string problem;
  const std::optional<Json> document = parse_json(bytes, problem);
  if (!document) {
    result.notes.push_back({NoteKind::kFailed, file_name + ": " + problem});
    return;
  }
  LibraryReader(file_name, siblings, result).Read(*document);
}

}  // namespace tooldb

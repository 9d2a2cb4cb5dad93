#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "filters/fusion.h"
#include "filters/fusion_holders.h"
#include "filters/fusion_tool.h"
#include "filters/fusion_types.h"
#include "filters/plain_text.h"
#include "filters/zip_archive.h"

namespace tooldb {
namespace {

/// Enough to tell tools apart in a list; the whole text is the description.
constexpr std::size_t kLongestCode = 60;
constexpr std::string_view kPackedLibrary = "tools.json";

std::string tool_number(const Json& entry) {
  JsonFields fields(entry);
  const Json* post = fields.Read("post-process");
  if (post == nullptr) return {};
  JsonFields post_fields(*post);
  const std::optional<double> number = post_fields.Number("number");
  return number && *number > 0 ? number_text(*number) : std::string();
}

FusionClass class_of(const Json& entry) {
  JsonFields fields(entry);
  const FusionType* type = find_fusion_type(fields.Text("type"));
  return type == nullptr ? FusionClass::kCutter : type->form;
}

class FusionLibraryReader {
 public:
  FusionLibraryReader(const std::string& file_name, ImportResult& result)
      : file_name_(file_name), result_(result) {}

  void Read(const Json& entries);

 private:
  void Count(const Json& entry);
  void ReadEntry(const Json& entry, std::size_t position);
  std::string Code(const Json& entry) const;
  std::string Source(const Json& entry, std::size_t position) const;
  void Refuse(NoteKind kind, const std::string& source, const std::string& text);

  const std::string& file_name_;
  ImportResult& result_;
  FusionHolders holders_;
  std::map<std::string, int> numbers_;  ///< how often each tool number occurs
};

void FusionLibraryReader::Count(const Json& entry) {
  if (!entry.is_object()) return;
  const FusionClass form = class_of(entry);
  if (form == FusionClass::kHolder) {
    holders_.CountAlone(entry);
    return;
  }
  if (form == FusionClass::kJet) return;
  if (const std::string number = tool_number(entry); !number.empty()) ++numbers_[number];
  JsonFields fields(entry);
  const LengthUnit unit = read_fusion_unit(fields).value_or(LengthUnit::kMillimetre);
  if (const Json* holder = fields.Read("holder")) holders_.Count(*holder, unit);
}

/// A number that no other tool has; else the maker's id; else the description.
std::string FusionLibraryReader::Code(const Json& entry) const {
  const std::string number = tool_number(entry);
  if (!number.empty() && numbers_.at(number) == 1) return "T" + number;
  JsonFields fields(entry);
  const std::string id = storable_line(fields.Text("product-id"));
  const std::string text = id.empty() ? fusion_description(entry) : id;
  const std::string_view cut = trimmed_text(at_most(text, kLongestCode));
  return cut.empty() ? "Tool" : std::string(cut);
}

std::string FusionLibraryReader::Source(const Json& entry, std::size_t position) const {
  std::string source = file_name_ + ": entry " + std::to_string(position + 1);
  if (!entry.is_object()) return source;
  const std::string description = fusion_description(entry);
  return description.empty() ? source : source + ", " + description;
}

void FusionLibraryReader::Refuse(NoteKind kind, const std::string& source,
                                 const std::string& text) {
  ImportEntry entry;
  entry.source = source;
  entry.notes.push_back({kind, text});
  result_.entries.push_back(std::move(entry));
}

void FusionLibraryReader::ReadEntry(const Json& entry, std::size_t position) {
  const std::string source = Source(entry, position);
  if (!entry.is_object()) return Refuse(NoteKind::kFailed, source, "the entry is not an object");
  JsonFields fields(entry);
  const std::string type = fields.Text("type");
  if (type.empty()) return Refuse(NoteKind::kFailed, source, "the entry has no type");
  switch (class_of(entry)) {
    case FusionClass::kJet:
      return Refuse(
          NoteKind::kNotRepresentable, source,
          "a " + type + " has no body that cuts; tools here are milled, drilled or turned");
    case FusionClass::kHolder:
      result_.entries.push_back(holders_.TakeAlone(entry, source));
      return;
    default:
      result_.entries.push_back(import_fusion_tool(entry, source, Code(entry), holders_));
  }
}

void FusionLibraryReader::Read(const Json& entries) {
  for (const Json& entry : entries) Count(entry);
  for (ImportEntry& component : holders_.MakeComponents(file_name_)) {
    result_.entries.push_back(std::move(component));
  }
  for (std::size_t i = 0; i < entries.size(); ++i) ReadEntry(entries[i], i);
  // A component comes before the tools that use it.
  std::stable_partition(result_.entries.begin(), result_.entries.end(),
                        [](const ImportEntry& e) { return e.component != nullptr; });
}

}  // namespace

bool fits_fusion_json(std::string_view bytes) {
  const auto has = [bytes](std::string_view text) {
    return bytes.find(text) != std::string_view::npos;
  };
  return has("\"data\"") && has("\"type\"") && (has("\"geometry\"") || has("\"segments\""));
}

void read_fusion_json(std::string_view bytes, const std::string& file_name, const SiblingReader&,
                      ImportResult& result) {
  std::string problem;
  const std::optional<Json> document = parse_json(bytes, problem);
  if (!document) {
    result.notes.push_back({NoteKind::kFailed, file_name + ": " + problem});
    return;
  }
  JsonFields fields(*document);
  const Json* data = fields.Read("data");
  if (data == nullptr || !data->is_array()) {
    result.notes.push_back(
        {NoteKind::kFailed, file_name + ": no list named \"data\": this is no tool library"});
    return;
  }
  FusionLibraryReader(file_name, result).Read(*data);
}

bool fits_fusion_archive(std::string_view bytes) {
  return is_zip(bytes) && bytes.find(kPackedLibrary) != std::string_view::npos;
}

void read_fusion_archive(std::string_view bytes, const std::string& file_name,
                         const SiblingReader& siblings, ImportResult& result) {
  // Some files of this name are the document in the clear.
  if (!is_zip(bytes)) return read_fusion_json(bytes, file_name, siblings, result);
  std::string problem;
  const std::optional<std::string> document = unzip_member(bytes, kPackedLibrary, problem);
  if (!document) {
    result.notes.push_back({NoteKind::kFailed, file_name + ": " + problem});
    return;
  }
  read_fusion_json(*document, file_name, siblings, result);
}

}  // namespace tooldb

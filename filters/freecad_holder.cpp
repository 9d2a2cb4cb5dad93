#include <optional>
#include <utility>

#include "filters/assembly.h"
#include "filters/freecad.h"
#include "filters/plain_text.h"

namespace tooldb {
namespace {

std::optional<OutlinePoint> read_point(const Json& pair) {
  if (!pair.is_array() || pair.size() != 2) return std::nullopt;
  if (!pair[0].is_number() || !pair[1].is_number()) return std::nullopt;
  const OutlinePoint point{pair[0].get<double>(), pair[1].get<double>()};
  return point.x < 0 ? std::nullopt : std::optional(point);
}

/// The outline, from the axis and back to it; nothing when the points are no such pairs.
std::optional<std::string> read_outline(const Json* profile) {
  if (profile == nullptr || !profile->is_array() || profile->size() < 3) return std::nullopt;
  std::optional<OutlineText> outline;
  for (const Json& pair : *profile) {
    const std::optional<OutlinePoint> point = read_point(pair);
    if (!point) return std::nullopt;
    if (!outline) outline.emplace(OutlinePoint{0, point->y});
    outline->LineTo(*point);
  }
  outline->LineTo({0, outline->At().y});
  return outline->Text();
}

ImportEntry import_holder(const Json& document, const std::string& file_name) {
  ImportEntry entry;
  entry.source = file_name;
  JsonFields fields(document);
  const std::optional<std::string> outline = read_outline(fields.Read("profile"));
  if (!outline) {
    entry.notes.push_back(
        {NoteKind::kFailed, file_name + ": no outline of at least three [radius, height] pairs"});
    return entry;
  }
  std::string stem = storable_line(without_extension(last_path_part(file_name)));
  if (stem.empty()) stem = "Holder";
  const std::string name = storable_line(fields.Text("name"));
  const std::string unit_name = lower_case(fields.Text("units"));
  const LengthUnit unit = unit_name.starts_with("in") ? LengthUnit::kInch : LengthUnit::kMillimetre;
  auto holder = make_holder(name.empty() ? stem : name, *outline, unit);
  std::string kept;
  fields.KeepUnread("FREECAD", [&](const std::string& key, std::string_view value) {
    holder->SetParam(element_name(key).c_str(), storable_text(value).c_str());
    append_to_list(kept, key);
  });
  entry.component = make_holder_component(stem, std::move(holder));
  entry.notes.push_back({NoteKind::kMapped, "as a library component with one holder: profile"});
  if (unit == LengthUnit::kInch) {
    entry.notes.push_back({NoteKind::kApproximated,
                           "lengths are in inches: use this holder in tools in inches only"});
  }
  if (!kept.empty()) entry.notes.push_back({NoteKind::kKept, "as parameters: " + kept});
  return entry;
}

}  // namespace

bool fits_freecad_holder(std::string_view bytes) {
  return bytes.find("\"profile\"") != std::string_view::npos &&
         bytes.find("\"units\"") != std::string_view::npos;
}

void read_freecad_holder(std::string_view bytes, const std::string& file_name, const SiblingReader&,
                         ImportResult& result) {
  std::string problem;
  const std::optional<Json> document = parse_json(bytes, problem);
  if (!document) {
    ImportEntry entry;
    entry.source = file_name;
    entry.notes.push_back({NoteKind::kFailed, file_name + ": " + problem});
    result.entries.push_back(std::move(entry));
    return;
  }
  result.entries.push_back(import_holder(*document, file_name));
}

}  // namespace tooldb

#include "filters/fusion_holders.h"

#include <algorithm>
#include <utility>

#include "filters/plain_text.h"

namespace tooldb {
namespace {

/// A shape as text: two copies of one holder differ at most in the last digits.
std::string shape_key(const FusionHolder& holder) {
  std::string key = holder.unit == LengthUnit::kInch ? "in" : "mm";
  const auto add = [&key](double value) { key += " " + number_text(value); };
  add(holder.gauge_length);
  for (const ConeSection& section : holder.sections) {
    add(section.height);
    add(section.lower_diameter);
    add(section.upper_diameter);
  }
  return key;
}

constexpr std::size_t kLongestName = 60;

std::optional<FusionHolder> read_holder(const Json& holder, LengthUnit unit) {
  JsonFields fields(holder);
  const LengthUnit own = read_fusion_unit(fields).value_or(unit);
  std::optional<std::vector<ConeSection>> sections =
      read_segments(fields.Read("segments"), own, unit);
  if (!sections) return std::nullopt;
  FusionHolder read{std::move(*sections), 0, unit};
  const double gauge = length_in(fields.Number("gaugeLength").value_or(0), own, unit);
  read.gauge_length = gauge > 0 ? gauge : total_height(read.sections);
  return read;
}

std::string holder_name(const Json& holder) {
  JsonFields fields(holder);
  const std::string description = storable_line(fields.Text("description"));
  return description.empty() ? storable_line(fields.Text("product-id")) : description;
}

/// The holder as an item; what has no place in an outline becomes its parameters.
std::unique_ptr<tdbToolHolder> new_holder(const Json& holder, const FusionHolder& shape,
                                          std::string& kept) {
  auto item = make_holder(holder_name(holder), stacked_outline(shape.sections), shape.unit);
  JsonFields fields(holder);
  for (const char* key : {"segments", "unit", "type", "description"}) fields.Skip(key);
  fields.KeepUnread("FUSION", [&](const std::string& key, std::string_view value) {
    if (value.empty()) return;
    item->SetParam(element_name(key).c_str(), storable_text(value).c_str());
    append_to_list(kept, key);
  });
  return item;
}

}  // namespace

std::optional<LengthUnit> read_fusion_unit(JsonFields& fields) {
  const std::string unit = fields.Text("unit");
  if (unit == "inches") return LengthUnit::kInch;
  if (unit == "millimeters") return LengthUnit::kMillimetre;
  return std::nullopt;
}

std::optional<std::vector<ConeSection>> read_segments(const Json* segments, LengthUnit from,
                                                      LengthUnit to) {
  if (segments == nullptr || !segments->is_array() || segments->empty()) return std::nullopt;
  std::vector<ConeSection> sections;
  for (const Json& segment : *segments) {
    JsonFields fields(segment);
    const auto read = [&](const char* key) {
      const std::optional<double> value = fields.Number(key);
      return value && *value >= 0 ? std::optional(length_in(*value, from, to)) : std::nullopt;
    };
    const auto height = read("height");
    const auto lower = read("lower-diameter");
    const auto upper = read("upper-diameter");
    if (!height || !lower || !upper) return std::nullopt;
    sections.push_back({*height, *lower, *upper});
  }
  if (total_height(sections) <= 0 || largest_diameter(sections) <= 0) return std::nullopt;
  return sections;
}

FusionHolders::Pooled* FusionHolders::Pool(const Json& holder, LengthUnit unit) {
  std::optional<FusionHolder> shape = read_holder(holder, unit);
  if (!shape) return nullptr;
  const std::string key = shape_key(*shape);
  const auto [place, is_new] = pool_.try_emplace(key);
  if (is_new) {
    place->second.shape = std::move(*shape);
    place->second.source = &holder;
    order_.push_back(key);
  }
  return &place->second;
}

void FusionHolders::Count(const Json& holder, LengthUnit unit) {
  if (Pooled* pooled = Pool(holder, unit)) ++pooled->uses;
}

void FusionHolders::CountAlone(const Json& holder) {
  JsonFields fields(holder);
  const LengthUnit unit = read_fusion_unit(fields).value_or(LengthUnit::kMillimetre);
  if (Pooled* pooled = Pool(holder, unit)) pooled->alone = true;
}

std::string FusionHolders::FreeCode(const Pooled& pooled) {
  std::string name = holder_name(*pooled.source);
  if (name.empty()) name = "Holder";
  name = std::string(trimmed_text(at_most(name, kLongestName)));
  JsonFields fields(*pooled.source);
  if (read_fusion_unit(fields).value_or(pooled.shape.unit) != pooled.shape.unit) {
    name += pooled.shape.unit == LengthUnit::kInch ? " in" : " mm";  // beside the original
  }
  std::string code = name;
  for (int n = 2; !codes_.insert(lower_case(code)).second; ++n) {
    code = name + " (" + std::to_string(n) + ")";
  }
  return code;
}

std::vector<ImportEntry> FusionHolders::MakeComponents(const std::string& file_name) {
  std::vector<ImportEntry> entries;
  // A holder that stands by itself has the first right to its name.
  std::stable_partition(order_.begin(), order_.end(),
                        [this](const std::string& key) { return pool_.at(key).alone; });
  for (const std::string& key : order_) {
    Pooled& pooled = pool_.at(key);
    if (!pooled.alone && pooled.uses < 2) continue;
    std::string kept;
    const std::string code = FreeCode(pooled);
    pooled.component = make_holder_component(code, new_holder(*pooled.source, pooled.shape, kept));
    if (pooled.alone) continue;
    ImportEntry entry;
    entry.source = file_name + ": holder of " + std::to_string(pooled.uses) + " tools";
    entry.component = std::make_unique<tdbToolComponent>(*pooled.component);
    entry.notes.push_back({NoteKind::kMapped, "as a library component with one holder: segments"});
    if (!kept.empty()) entry.notes.push_back({NoteKind::kKept, "as parameters: " + kept});
    entries.push_back(std::move(entry));
  }
  return entries;
}

ImportEntry FusionHolders::TakeAlone(const Json& holder, const std::string& source) {
  ImportEntry entry;
  entry.source = source;
  JsonFields fields(holder);
  entry.guid = fields.Text("guid");
  Pooled* pooled = Pool(holder, read_fusion_unit(fields).value_or(LengthUnit::kMillimetre));
  if (pooled == nullptr || !pooled->component) {
    entry.notes.push_back({NoteKind::kFailed, "the holder has no usable list of segments"});
    return entry;
  }
  if (pooled->taken) {
    entry.notes.push_back(
        {NoteKind::kMapped, "the same holder as component " + pooled->component->GetCode()});
    return entry;
  }
  pooled->taken = true;
  entry.component = std::make_unique<tdbToolComponent>(*pooled->component);
  entry.notes.push_back({NoteKind::kMapped, "as a library component with one holder: segments"});
  return entry;
}

const FusionHolder* FusionHolders::Find(const Json& holder, LengthUnit unit) const {
  const std::optional<FusionHolder> shape = read_holder(holder, unit);
  if (!shape) return nullptr;
  const auto place = pool_.find(shape_key(*shape));
  return place == pool_.end() ? nullptr : &place->second.shape;
}

std::unique_ptr<tdbItem> FusionHolders::ForTool(const Json& holder, LengthUnit unit) const {
  const std::optional<FusionHolder> shape = read_holder(holder, unit);
  if (!shape) return nullptr;
  const auto place = pool_.find(shape_key(*shape));
  if (place != pool_.end() && place->second.component) {
    return make_component_use(*place->second.component);
  }
  std::string kept;
  return new_holder(holder, *shape, kept);
}

}  // namespace tooldb

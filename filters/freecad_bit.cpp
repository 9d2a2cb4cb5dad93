#include <algorithm>
#include <map>
#include <utility>

#include "filters/entry_builder.h"
#include "filters/freecad.h"
#include "filters/freecad_shapes.h"
#include "filters/insert_plan.h"
#include "filters/plain_text.h"

namespace tooldb {
namespace {

const std::string kPrefix = "FREECAD";
/// Beyond this a length is a slip, and no outline can be built.
constexpr double kLargestLength = 1e6;

bool is_inch(const Unit* unit) {
  if (unit == nullptr || unit->dimension != Dimension::kLength) return false;
  return unit->text.back() != 'm';  // all metric units end so, and no other
}

/// Reads the parameters of one bit into an entry.
class BitReader {
 public:
  BitReader(const Json& document, const std::string& file_name)
      : root_(document), file_name_(file_name), builder_(file_name, FindUnit(document)) {
    const Json* parameters = root_.Read("parameter");
    if (parameters == nullptr || !parameters->is_object()) return;
    for (const auto& [name, value] : parameters->items()) {
      parameters_.emplace(lower_case(name), Parameter{name, &value});
    }
  }

  ImportEntry Read();

 private:
  struct Parameter {
    std::string name;
    const Json* value;
    bool read = false;
  };

  static LengthUnit FindUnit(const Json& document);
  static std::optional<Quantity> QuantityOf(const Json& value);

  void ReadIdentity();
  void ReadShape();
  void ReadFields(std::span<const BitField> fields);
  void ReadField(const BitField& field, Parameter& parameter);
  void ReadFlutes();
  void ReadChipload();
  void ReadStickoutAttribute();
  void AddCutter(const BitShape& shape);
  void AddInsert(const std::string& key);
  void KeepRest();
  Parameter* Find(std::string_view name);
  double ToolLength(double top) const;
  double InMillimetres(double value) const {
    return length_in(value, builder_.Unit(), LengthUnit::kMillimetre);
  }

  JsonFields root_;
  const std::string& file_name_;
  EntryBuilder builder_;
  std::map<std::string, Parameter> parameters_;
  BitSize size_;
};

LengthUnit BitReader::FindUnit(const Json& document) {
  const auto parameters = document.find("parameter");
  if (parameters == document.end() || !parameters->is_object()) return LengthUnit::kMillimetre;
  const Unit* first = nullptr;
  for (const auto& [name, value] : parameters->items()) {
    const std::optional<Quantity> quantity = QuantityOf(value);
    if (!quantity || quantity->unit == nullptr || quantity->unit->dimension != Dimension::kLength) {
      continue;
    }
    if (lower_case(name) == "diameter") {
      first = quantity->unit;
      break;
    }
    // A chip load is often zero, and says nothing about the author's unit.
    if (first == nullptr && quantity->value != 0) first = quantity->unit;
  }
  return is_inch(first) ? LengthUnit::kInch : LengthUnit::kMillimetre;
}

std::optional<Quantity> BitReader::QuantityOf(const Json& value) {
  if (value.is_number()) return Quantity{value.get<double>(), nullptr};
  if (value.is_string()) return parse_quantity(value.get_ref<const std::string&>());
  return std::nullopt;
}

BitReader::Parameter* BitReader::Find(std::string_view name) {
  const auto found = parameters_.find(std::string(name));
  return found == parameters_.end() ? nullptr : &found->second;
}

bool looks_like_uuid(std::string_view text) {
  if (text.size() != 36) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
    const bool hex = (text[i] >= '0' && text[i] <= '9') || (text[i] >= 'a' && text[i] <= 'f') ||
                     (text[i] >= 'A' && text[i] <= 'F');
    if (dash ? text[i] != '-' : !hex) return false;
  }
  return true;
}

void BitReader::ReadIdentity() {
  const std::string id = root_.Text("id");
  const std::string name = root_.Text("name");
  const std::string stem(without_extension(last_path_part(file_name_)));
  builder_.SetGuid(id.empty() ? stem : id);
  builder_.SetDescription(name.empty() ? stem : name);
  // A number made by a machine identifies nothing to a person.
  for (const std::string& code : {id, stem, name}) {
    if (storable_line(code).empty() || looks_like_uuid(code)) continue;
    builder_.SetCode(code);
    break;
  }
  if (builder_.Tool().GetCode().empty()) {
    builder_.SetCode(storable_line(stem).empty() ? "Tool" : stem);
  }
  if (!id.empty() && id != builder_.Tool().GetCode()) builder_.Keep(kPrefix + ".id", id);
  root_.Skip("version");
}

void BitReader::ReadField(const BitField& field, Parameter& parameter) {
  const std::optional<Quantity> quantity = QuantityOf(*parameter.value);
  const std::optional<double> value =
      !quantity ? std::nullopt
                : (field.dimension == Dimension::kAngle ? degrees(*quantity)
                                                        : length_in(*quantity, builder_.Unit()));
  if (!value || *value < 0 || *value > kLargestLength) {
    builder_.Note(NoteKind::kApproximated,
                  parameter.name + " \"" + json_text(*parameter.value) + "\" is not usable as " +
                      (field.dimension == Dimension::kAngle ? "an angle" : "a length") +
                      "; left out");
    return;
  }
  const bool is_length = field.dimension == Dimension::kLength;
  if (is_length && quantity->unit == nullptr && builder_.Unit() == LengthUnit::kInch) {
    builder_.Note(NoteKind::kApproximated, parameter.name + " \"" + json_text(*parameter.value) +
                                               "\" has no unit and is read as millimetres, beside "
                                               "others in inches: check it");
  }
  if (*value != 0) size_.*field.target = *value;
  parameter.read = true;
  builder_.Mapped(parameter.name);
}

void BitReader::ReadFields(std::span<const BitField> fields) {
  for (const BitField& field : fields) {
    if (Parameter* parameter = Find(field.name)) ReadField(field, *parameter);
  }
}

void BitReader::ReadFlutes() {
  Parameter* flutes = Find("flutes");
  if (flutes == nullptr) return;
  const std::optional<Quantity> count = QuantityOf(*flutes->value);
  if (!count || count->unit != nullptr || count->value < 1 || count->value > 1000) return;
  builder_.Tool().GetCutCond().SetNumberOfInsert(static_cast<int>(count->value));
  flutes->read = true;
  builder_.Mapped(flutes->name);
}

void BitReader::ReadChipload() {
  Parameter* chipload = Find("chipload");
  if (chipload == nullptr) return;
  const std::optional<Quantity> quantity = QuantityOf(*chipload->value);
  const std::optional<double> load =
      quantity ? length_in(*quantity, LengthUnit::kMillimetre) : std::nullopt;
  if (!load || *load <= 0) return;
  tdbOptimQuantity& thickness = builder_.Tool().GetCutCond().GetOptimChipThickness();
  thickness.optimal = *load;
  thickness.maximum = std::max(thickness.maximum, *load);
  chipload->read = true;
  builder_.Mapped(chipload->name);
}

/// Bits of an add-on keep the stickout among the attributes.
void BitReader::ReadStickoutAttribute() {
  const Json* attributes = root_.Read("attribute");
  if (attributes == nullptr || !attributes->is_object()) return;
  const auto stickout = attributes->find("btl-stickout");
  if (stickout == attributes->end() || size_.stickout > 0) return;
  const std::optional<Quantity> quantity = QuantityOf(*stickout);
  const std::optional<double> value =
      quantity ? length_in(*quantity, builder_.Unit()) : std::nullopt;
  if (value && *value > 0 && *value < kLargestLength) size_.stickout = *value;
}

double BitReader::ToolLength(double top) const {
  if (size_.stickout > 0) return size_.stickout;
  return std::max(size_.overall, top);
}

void BitReader::AddCutter(const BitShape& shape) {
  ReadFields(shape.fields);
  builder_.SetKind(shape.kind);
  if (size_.diameter <= 0) {
    builder_.Note(NoteKind::kNotRepresentable, "the bit has no diameter: no cutter is drawn");
    return;
  }
  if (size_.cutting_length <= 0 && size_.overall > 0) {
    size_.cutting_length = size_.overall;
    builder_.Note(NoteKind::kApproximated, "no cutting length is given: the whole length cuts");
  }
  std::vector<std::string> remarks;
  shape.adjust(size_, remarks);
  CutterPlan plan = shape.recipe(size_);
  plan.remarks.insert(plan.remarks.begin(), remarks.begin(), remarks.end());
  const ShankSize shank{size_.shank_diameter,
                        size_.overall,
                        size_.neck_diameter,
                        size_.neck_length > 0 ? plan.top + size_.neck_length : 0,
                        {}};
  tdbCutCond& conditions = builder_.Tool().GetCutCond();
  conditions.SetDc(InMillimetres(size_.diameter));
  builder_.AddCuttingTool(make_cutting_tool(plan, shank, builder_.Unit()), plan,
                          ToolLength(plan.top));
}

void BitReader::AddInsert(const std::string& key) {
  ReadFields(insert_bit_fields());
  builder_.SetKind(ToolKind::kTurning);
  const InsertShape* named = insert_shape(std::string_view(key).substr(kInsertShapePrefix.size()));
  const InsertShape& shape = named != nullptr ? *named : insert_shape_of_angle(size_.point_angle);
  InsertSize insert{size_.diameter, size_.edge_length, size_.corner_radius, size_.point_angle, 0};
  CutterPlan plan = insert_plan(shape, insert, builder_.Unit());
  builder_.Tool().GetTurningCutCond().SetCornerRadius(InMillimetres(insert.corner_radius));
  builder_.AddCuttingTool(make_insert(plan, std::string(1, shape.letter), builder_.Unit()), plan,
                          0);
}

void BitReader::ReadShape() {
  const std::string type = root_.Text("shape-type");
  const std::string file = root_.Text("shape");
  for (const std::string& key : {bit_shape_key(type), bit_shape_key(file)}) {
    if (const BitShape* shape = find_bit_shape(key)) return AddCutter(*shape);
    if (key.starts_with(kInsertShapePrefix)) return AddInsert(key);
  }
  builder_.Note(NoteKind::kNotRepresentable,
                "shape not known: \"" + (file.empty() ? type : file) + "\"; no outline");
  CutterPlan plan;
  plan.kind = CuttingKind::kProfile2d;
  builder_.AddCuttingTool(make_cutting_tool(plan, {}, builder_.Unit()), plan, 0);
}

void BitReader::KeepRest() {
  const auto keep = [this](const std::string& name, std::string_view value) {
    builder_.Keep(name, value);
  };
  for (const auto& [key, parameter] : parameters_) {
    if (parameter.read && !builder_.IsRedrawn()) continue;
    flatten_json(kPrefix + "." + parameter.name, *parameter.value, keep);
  }
  for (const char* key : {"shape", "shape-type", "attribute"}) {
    if (const Json* value = root_.Read(key)) flatten_json(kPrefix + "." + key, *value, keep);
  }
  root_.KeepUnread(kPrefix, keep);
}

ImportEntry BitReader::Read() {
  ReadIdentity();
  ReadFields(common_bit_fields());
  ReadFlutes();
  ReadChipload();
  ReadStickoutAttribute();
  ReadShape();
  KeepRest();
  return builder_.Finish();
}

}  // namespace

bool fits_freecad_bit(std::string_view bytes) {
  return bytes.find("\"parameter\"") != std::string_view::npos &&
         bytes.find("\"shape\"") != std::string_view::npos;
}

ImportEntry import_freecad_bit(std::string_view bytes, const std::string& file_name) {
  ImportEntry failed;
  failed.source = file_name;
  std::string problem;
  const std::optional<Json> document = parse_json(bytes, problem);
  if (document && !document->contains("shape") && !document->contains("parameter")) {
    problem = "neither a shape nor parameters: this is no tool bit";
  }
  if (!problem.empty()) {
    failed.notes.push_back({NoteKind::kFailed, file_name + ": " + problem});
    return failed;
  }
  return BitReader(*document, file_name).Read();
}

void read_freecad_bit(std::string_view bytes, const std::string& file_name, const SiblingReader&,
                      ImportResult& result) {
  result.entries.push_back(import_freecad_bit(bytes, file_name));
}

}  // namespace tooldb

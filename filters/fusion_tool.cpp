#include "filters/fusion_tool.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "filters/entry_builder.h"
#include "filters/fusion_presets.h"
#include "filters/insert_plan.h"
#include "filters/plain_text.h"

namespace tooldb {
namespace {

/// Beyond this a number is a slip, and no outline can be built.
constexpr double kLargestNumber = 1e6;

/// The file's own sums are rounded.
constexpr double kGaugeTolerance = 1e-4;

class FusionToolReader {
 public:
  FusionToolReader(const Json& entry, const FusionType& type, const FusionHolders& holders,
                   EntryBuilder& builder);

  void Read();

 private:
  double ReadLength(const std::string& key);
  void ReadFields(std::span<const FusionField> fields);
  void ReadIdentity();
  void ReadTeeth();
  void AddCutter();
  void AddForm();
  void AddInsert();
  void AddGroove();
  void AddWithHolder(std::unique_ptr<tdbCuttingTool> cutting_tool, const CutterPlan& plan);
  void CheckGaugeLength(double length);
  ShankSize ReadShank(const CutterPlan& plan);
  void AddOffsets();
  void KeepRest();
  double InMillimetres(double value) const {
    return length_in(value, builder_.Unit(), LengthUnit::kMillimetre);
  }

  const FusionType& type_;
  const FusionHolders& holders_;
  EntryBuilder& builder_;
  const Json* entry_json_;
  JsonFields entry_;  ///< what is read of it is not kept
  JsonFields geometry_;
  const Json* holder_json_;
  const FusionHolder* holder_ = nullptr;
  FusionSize size_;
  double offset_radius_ = 0;
};

const Json& field_or_null(const Json& entry, const char* key) {
  static const Json kNull;
  const auto field = entry.find(key);
  return field == entry.end() ? kNull : *field;
}

FusionToolReader::FusionToolReader(const Json& entry, const FusionType& type,
                                   const FusionHolders& holders, EntryBuilder& builder)
    : type_(type),
      holders_(holders),
      builder_(builder),
      entry_json_(&entry),
      entry_(entry),
      geometry_(field_or_null(entry, "geometry")),
      holder_json_(&field_or_null(entry, "holder")) {}

/// A length or an angle; 0, which stands for "does not apply", when it is missing or not usable.
double FusionToolReader::ReadLength(const std::string& key) {
  const std::optional<double> value = geometry_.Number(key);
  if (value && *value >= 0 && *value <= kLargestNumber) {
    if (*value > 0) builder_.Mapped(key);
    return *value;
  }
  if (geometry_.Has(key)) {
    geometry_.GiveBack(key);
    builder_.Note(NoteKind::kApproximated,
                  key + (value ? " of " + number_text(*value) : "") + " is not usable; left out");
  }
  return 0;
}

void FusionToolReader::ReadFields(std::span<const FusionField> fields) {
  for (const FusionField& field : fields) size_.*field.target = ReadLength(std::string(field.key));
}

void FusionToolReader::ReadTeeth() {
  const std::optional<double> teeth = geometry_.Number("NOF");
  if (!teeth || *teeth < 1 || *teeth > 1000) return;
  builder_.Tool().GetCutCond().SetNumberOfInsert(static_cast<int>(*teeth));
  builder_.Mapped("NOF");
}

void FusionToolReader::ReadIdentity() {
  JsonFields fields(*entry_json_);
  builder_.SetGuid(fields.Text("guid"));
  builder_.SetKind(type_.kind);
}

/// The neck of an older file, which gives only its end, is as wide as what it joins.
ShankSize FusionToolReader::ReadShank(const CutterPlan& plan) {
  ShankSize shank{size_.shank_diameter,
                  size_.overall > 0 ? size_.overall : size_.stickout,
                  size_.neck_diameter,
                  size_.neck_end,
                  {}};
  if (shank.neck_diameter <= 0) {
    shank.neck_diameter =
        shank.diameter > 0 ? std::min(plan.top_diameter, shank.diameter) : plan.top_diameter;
  }
  JsonFields shaft(field_or_null(*entry_json_, "shaft"));
  const auto sections = read_segments(shaft.Read("segments"), builder_.Unit(), builder_.Unit());
  if (sections) {
    entry_.Skip("shaft");
    const double bottom = std::max(plan.top, shank.neck_end);
    const double nose = size_.stickout > 0 ? size_.stickout : shank.overall;
    shank.shaft = cut_off_at(*sections, nose - bottom);
    builder_.Mapped("shaft");
  }
  return shank;
}

void FusionToolReader::CheckGaugeLength(double length) {
  if (size_.gauge_length <= 0 || holder_ == nullptr) return;
  if (std::abs(size_.gauge_length - length) <= kGaugeTolerance * length) return;
  builder_.Note(NoteKind::kApproximated,
                "assemblyGaugeLength is " + number_text(size_.gauge_length) +
                    "; stickout and holder together give " + number_text(length));
}

void FusionToolReader::AddWithHolder(std::unique_ptr<tdbCuttingTool> cutting_tool,
                                     const CutterPlan& plan) {
  holder_ = holders_.Find(*holder_json_, builder_.Unit());
  double stickout = size_.stickout > 0 ? size_.stickout : size_.overall;
  if (stickout <= 0) stickout = plan.top;
  const double gauge = holder_ == nullptr ? 0 : holder_->gauge_length;
  CheckGaugeLength(stickout + gauge);
  builder_.AddCuttingTool(std::move(cutting_tool), plan, stickout + gauge);
  if (holder_ == nullptr) return;
  builder_.AddAt(holders_.ForTool(*holder_json_, builder_.Unit()), -gauge);
  builder_.Mapped("holder");
}

void FusionToolReader::AddCutter() {
  ReadFields(common_fusion_fields());
  ReadFields(type_.fields);
  if (size_.diameter <= 0) {
    builder_.Note(NoteKind::kNotRepresentable, "no cutting diameter (DC): no cutter is drawn");
    return;
  }
  CutterRecipe recipe = type_.recipe;
  if (JsonFields(*entry_json_).Text("tapered-type") == "tapered_ball") {
    if (size_.corner_radius > 0) size_.diameter = 2 * size_.corner_radius;
    recipe = tapered_ball_cutter;
  }
  std::vector<std::string> remarks;
  if (type_.adjust != nullptr) type_.adjust(size_, remarks);
  CutterPlan plan = recipe(size_);
  plan.remarks.insert(plan.remarks.begin(), remarks.begin(), remarks.end());
  offset_radius_ = size_.diameter / 2;
  builder_.Tool().GetCutCond().SetDc(InMillimetres(size_.diameter));
  if (plan.kind == CuttingKind::kChamfer1) {
    builder_.Tool().GetCutCond().SetApproachAngle(90 - size_.side_angle);
  }
  const ShankSize shank = ReadShank(plan);
  AddWithHolder(make_cutting_tool(plan, shank, builder_.Unit()), plan);
}

std::optional<OutlinePoint> read_pair(const Json* pair) {
  if (pair == nullptr || !pair->is_array() || pair->size() != 2) return std::nullopt;
  if (!(*pair)[0].is_number() || !(*pair)[1].is_number()) return std::nullopt;
  return OutlinePoint{(*pair)[0].get<double>(), (*pair)[1].get<double>()};
}

/// The outline of a form mill: from its first point, by lines and arcs.
std::optional<CutterPlan> read_form(const Json* profile) {
  if (profile == nullptr || !profile->is_array() || profile->size() < 3) return std::nullopt;
  std::optional<OutlineText> outline;
  CutterPlan plan;
  plan.kind = CuttingKind::kProfile2d;
  for (const Json& step : *profile) {
    JsonFields fields(step);
    const std::optional<OutlinePoint> end = read_pair(fields.Read("end"));
    if (!end) return std::nullopt;
    if (!outline) {
      outline.emplace(*end);
    } else if (fields.Flag("arc").value_or(false)) {
      const std::optional<OutlinePoint> center = read_pair(fields.Read("center"));
      if (!center) return std::nullopt;
      outline->ArcTo(*end, *center, fields.Flag("ccw").value_or(true));
    } else {
      outline->LineTo(*end);
    }
    plan.top = std::max(plan.top, end->y);
  }
  plan.outline = outline->Text();
  return plan;
}

void FusionToolReader::AddForm() {
  ReadFields(common_fusion_fields());
  std::optional<CutterPlan> plan = read_form(geometry_.Read("profile"));
  if (!plan) {
    geometry_.GiveBack("profile");
    builder_.Note(NoteKind::kNotRepresentable, "the form mill has no usable profile");
    return;
  }
  builder_.Mapped("profile");
  offset_radius_ = size_.diameter / 2;
  plan->top_diameter = size_.shank_diameter;
  if (size_.diameter > 0) builder_.Tool().GetCutCond().SetDc(InMillimetres(size_.diameter));
  const ShankSize shank = ReadShank(*plan);
  AddWithHolder(make_cutting_tool(*plan, shank, builder_.Unit()), *plan);
}

void FusionToolReader::AddInsert() {
  const std::string letter = geometry_.Text("SC");
  const InsertShape* shape = insert_shape(letter);
  if (shape == nullptr) {
    geometry_.GiveBack("SC");
    builder_.Note(NoteKind::kNotRepresentable,
                  "insert shape \"" + letter + "\" has no outline here");
    return;
  }
  InsertSize size;
  size.inscribed_circle = ReadLength("INSD");
  size.corner_radius = ReadLength("RE");
  size.thickness = ReadLength("S");
  builder_.Mapped("SC");
  CutterPlan plan = insert_plan(*shape, size, builder_.Unit());
  offset_radius_ = size.corner_radius;
  builder_.Tool().GetTurningCutCond().SetCornerRadius(InMillimetres(size.corner_radius));
  builder_.AddCuttingTool(make_insert(plan, std::string(1, shape->letter), builder_.Unit()), plan,
                          0);
}

/// A grooving insert: a bar across the turning plane, its cutting corners rounded.
void FusionToolReader::AddGroove() {
  const double width = ReadLength("tool_insertWidth");
  const double length = ReadLength("LH");
  if (width <= 0 || length <= 0) {
    builder_.Note(NoteKind::kNotRepresentable, "no width and head length: no insert is drawn");
    return;
  }
  const double half = width / 2;
  const double radius = std::min({ReadLength("RE"), half, length});
  OutlineText outline({0, 0});
  outline.LineTo({half - radius, 0});
  if (radius > 0) outline.ArcTo({half, radius}, {half - radius, radius}, true);
  outline.LineTo({half, length});
  outline.LineTo({-half, length});
  outline.LineTo({-half, radius});
  if (radius > 0) outline.ArcTo({radius - half, 0}, {radius - half, radius}, true);
  outline.LineTo({0, 0});
  CutterPlan plan;
  plan.kind = CuttingKind::kInsertRhombic;
  plan.outline = outline.Text();
  if (const double thickness = ReadLength("S"); thickness > 0) {
    plan.dimensions = {{"EXTRUDED_HMIN", -thickness}, {"EXTRUDED_HMAX", 0}};
  }
  offset_radius_ = radius;
  builder_.Tool().GetTurningCutCond().SetCornerRadius(InMillimetres(radius));
  builder_.AddCuttingTool(make_extruded_cutter(plan, builder_.Unit()), plan, 0);
}

/// One record: the file has register numbers, but no measured offsets.
void FusionToolReader::AddOffsets() {
  JsonFields fields(field_or_null(*entry_json_, "post-process"));
  std::optional<double> index = fields.Number("length-offset");
  if (!index) index = fields.Number("compensation-offset");
  if (!index || *index <= 0) index = fields.Number("number");
  if (index && *index > 0 && *index <= 1e9) {
    OFFSET_VALUE offset;
    offset.index = static_cast<int>(*index);
    offset.RAD = offset_radius_;
    builder_.Tool().AddOffsetParam(offset);
    builder_.Mapped("offset register");
  }
  builder_.SetComment(fields.Text("comment"));
}

void FusionToolReader::KeepRest() {
  const auto keep = [this](const std::string& name, std::string_view value) {
    if (!value.empty()) builder_.Keep(name, value);
  };
  JsonFields post(field_or_null(*entry_json_, "post-process"));
  post.Skip("comment");
  post.KeepUnread("FUSION.post-process", keep);
  if (post.IsObject()) entry_.Skip("post-process");
  if (const Json& values = field_or_null(*entry_json_, "start-values"); values.is_object()) {
    entry_.Skip("start-values");
    read_fusion_presets(values, builder_);
  }
  if (holder_ != nullptr) entry_.Skip("holder");
  for (const char* key : {"unit", "description"}) entry_.Skip(key);
  if (geometry_.IsObject()) entry_.Skip("geometry");
  // A zero says that the key does not apply.
  if (builder_.IsRedrawn()) geometry_ = JsonFields(field_or_null(*entry_json_, "geometry"));
  geometry_.KeepUnread("FUSION.geometry", [&](const std::string& name, std::string_view value) {
    if (value != "0") keep(name, value);
  });
  entry_.KeepUnread("FUSION", keep);
}

void FusionToolReader::Read() {
  ReadIdentity();
  switch (type_.form) {
    case FusionClass::kCutter:
      AddCutter();
      break;
    case FusionClass::kForm:
      AddForm();
      break;
    case FusionClass::kInsert:
      AddInsert();
      break;
    case FusionClass::kGroove:
      AddGroove();
      break;
    case FusionClass::kHolder:
    case FusionClass::kJet:
      break;
  }
  if (builder_.Tool().IsTurningTool() && holder_json_->is_object()) {
    builder_.Note(NoteKind::kApproximated,
                  "the file gives no outline of a turning holder: it is not drawn");
  }
  ReadTeeth();
  AddOffsets();
  KeepRest();
}

/// An entry of no known type that looks like a mill.
constexpr FusionType kUnknownType = {
    "", FusionClass::kCutter, ToolKind::kMill, plain_cutter, {}, nullptr};

}  // namespace

std::string fusion_description(const Json& entry) {
  JsonFields fields(entry);
  std::string description = storable_line(fields.Text("description"));
  if (!description.empty()) return description;
  description = fields.Text("type");
  JsonFields geometry(field_or_null(entry, "geometry"));
  const std::string unit = fields.Text("unit") == "inches" ? " in" : " mm";
  if (const auto diameter = geometry.Number("DC"); diameter && *diameter > 0) {
    description += " D" + short_text(*diameter) + unit;
  } else if (const std::string shape = geometry.Text("SC"); !shape.empty()) {
    description += " " + shape;
  }
  return storable_line(description);
}

ImportEntry import_fusion_tool(const Json& entry, const std::string& source,
                               const std::string& code, const FusionHolders& holders) {
  JsonFields fields(entry);
  const std::optional<LengthUnit> unit = read_fusion_unit(fields);
  EntryBuilder builder(source, unit.value_or(LengthUnit::kMillimetre));
  builder.SetCode(code);
  builder.SetDescription(fields.Text("description"));
  if (fields.Text("description").empty()) {
    builder.SetDescription(fusion_description(entry));
    builder.Note(NoteKind::kApproximated, "no description; made from type and size");
  }
  if (!unit) {
    builder.Note(NoteKind::kApproximated,
                 "unit \"" + fields.Text("unit") + "\" is not known; taken as millimetres");
  }
  const std::string name = fields.Text("type");
  const FusionType* type = find_fusion_type(name);
  if (type == nullptr) {
    builder.Note(NoteKind::kApproximated,
                 "type \"" + name + "\" is not known; drawn as a cylinder");
  }
  FusionToolReader(entry, type != nullptr ? *type : kUnknownType, holders, builder).Read();
  return builder.Finish();
}

}  // namespace tooldb

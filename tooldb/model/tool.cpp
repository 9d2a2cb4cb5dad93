#include "tooldb/tool.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "tooldb/model/text.h"
#include "tooldb/model/tree_walk.h"
#include "tooldb/tool_parts.h"

/// Settings of an older way to find a tool's shortest length. Nothing reads them any more; they
/// travel with the tool.
struct tdbTool::LengthOptimisation {
  std::array<double, 14> limits{1e12,   1e12,   100000, 100000, 1000000, 0, 0,
                                100000, 100000, 0,      1e12,   1e12,    0, 0};
  int samples = 5;
  double samples_offset = 0.0025;
  int accuracy = 5;
  std::array<double, 2> feeds{100000, 100000};
};

namespace {

void assign(std::string& field, const char* text) { field = text == nullptr ? "" : text; }

template <class Part>
auto part_at(auto& tool, int i) {
  return i < 0 ? nullptr : tooldb::part_below<Part>(tool, i);
}

template <class Part>
int part_count(const tdbTool& tool) {
  constexpr int kMore = std::numeric_limits<int>::max();
  int left = kMore;
  tooldb::part_below<Part>(tool, left);
  return kMore - left;
}

/// Toward zero; what no int can hold becomes the nearest one, and NaN 0.
int truncated(double value) {
  using Limits = std::numeric_limits<int>;
  if (std::isnan(value)) return 0;
  return static_cast<int>(
      std::clamp(value, static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

void set_field(OFFSET_VALUE& record, OFFSET_VALUE::VarIndex field, double value) {
  using VarIndex = OFFSET_VALUE::VarIndex;
  switch (field) {
    case VarIndex::DX:
      record.DX = value;
      return;
    case VarIndex::DY:
      record.DY = value;
      return;
    case VarIndex::DZ:
      record.DZ = value;
      return;
    case VarIndex::RAD:
      record.RAD = value;
      return;
    case VarIndex::POS:
      record.POS = truncated(value);
      return;
    case VarIndex::ABS:
      record.ABS = truncated(value) != 0;
      return;
  }
}

}  // namespace

tdbTool::tdbTool(const std::string& code) : tdbCompositeItem(0, "Tool", code) {}
tdbTool::tdbTool(const std::string& code, const std::string& name)
    : tdbCompositeItem(0, name, code) {}
tdbTool::tdbTool(const std::string& code, int type) : tdbCompositeItem(type, "Tool", code) {}

tdbTool::tdbTool(const tdbTool& other)
    : tdbCompositeItem(other),
      description_(other.description_),
      comment_(other.comment_),
      param_list_(other.param_list_),
      offset_list_(other.offset_list_),
      offset_(other.offset_),
      tolerance_(other.tolerance_),
      diameter_(other.diameter_),
      delta_z_(other.delta_z_),
      section_start_(other.section_start_),
      section_span_(other.section_span_),
      extension_value_(other.extension_value_),
      extension_step_(other.extension_step_),
      extension_max_(other.extension_max_),
      cut_cond_(other.cut_cond_),
      turning_cut_cond_(other.turning_cut_cond_),
      length_optimisation_(other.length_optimisation_
                               ? std::make_unique<LengthOptimisation>(*other.length_optimisation_)
                               : nullptr),
      legacy_(other.legacy_ ? std::make_unique<tdbLegacyToolData>(*other.legacy_) : nullptr),
      trace_color_(other.trace_color_),
      sub_type_(other.sub_type_),
      auto_color_(other.auto_color_),
      auto_tcp_(other.auto_tcp_),
      section_enabled_(other.section_enabled_),
      extension_enabled_(other.extension_enabled_) {}

tdbTool& tdbTool::operator=(const tdbTool& other) {
  if (this == &other) return *this;
  tdbCompositeItem::operator=(other);
  description_ = other.description_;
  comment_ = other.comment_;
  param_list_ = other.param_list_;
  offset_list_ = other.offset_list_;
  offset_ = other.offset_;
  tolerance_ = other.tolerance_;
  diameter_ = other.diameter_;
  delta_z_ = other.delta_z_;
  section_start_ = other.section_start_;
  section_span_ = other.section_span_;
  extension_value_ = other.extension_value_;
  extension_step_ = other.extension_step_;
  extension_max_ = other.extension_max_;
  cut_cond_ = other.cut_cond_;
  turning_cut_cond_ = other.turning_cut_cond_;
  length_optimisation_ = other.length_optimisation_
                             ? std::make_unique<LengthOptimisation>(*other.length_optimisation_)
                             : nullptr;
  legacy_ = other.legacy_ ? std::make_unique<tdbLegacyToolData>(*other.legacy_) : nullptr;
  trace_color_ = other.trace_color_;
  sub_type_ = other.sub_type_;
  auto_color_ = other.auto_color_;
  auto_tcp_ = other.auto_tcp_;
  section_enabled_ = other.section_enabled_;
  extension_enabled_ = other.extension_enabled_;
  return *this;
}

tdbTool::~tdbTool() = default;

tdbItem* tdbTool::Clone() const { return new tdbTool(*this); }
std::string tdbTool::GetFileExt() { return std::string(tooldb::kToolFileExtension); }
bool tdbTool::IsSTL() { return false; }
bool tdbTool::IsParametric() const { return false; }
bool tdbTool::HasShape() { return false; }

void tdbTool::Update() {
  tdbCompositeItem::Update();
  const tdbToolCutter* cutter = GetCutter(0);
  if (cutter == nullptr) return;
  diameter_ = cutter->GetDiameter();
  if (!auto_tcp_) return;
  const Transformation<double> pos = cutter->GetAbsPos();
  // The negative zero of a cutter at the origin is kept: files carry it as "-0".
  offset_ = {-pos(0, 3), -pos(1, 3), -pos(2, 3)};
}

void tdbTool::SetDescr(const char* description) {
  assign(description_, description);
  SetModified(true);
}

void tdbTool::SetComment(const char* comment) {
  assign(comment_, comment);
  SetModified(true);
}

void tdbTool::SetTraceColor(int color) { trace_color_ = std::clamp(color, 0, 19); }

bool tdbTool::IsTurningTool() const { return GetType() == 3 || GetType() == 9; }

void tdbTool::SetToolModelTolerance(double tolerance) {
  tolerance_ = tolerance;
  SetModified(true);
}

const tdbLegacyToolData& tdbTool::GetLegacyData() const {
  static const tdbLegacyToolData kDefaults;
  return legacy_ ? *legacy_ : kDefaults;
}

void tdbTool::SetLegacyData(const tdbLegacyToolData& data) {
  legacy_ = std::make_unique<tdbLegacyToolData>(data);
}

void tdbTool::AddParam(const char* name, const char* value) {
  if (name == nullptr || value == nullptr) return;
  param_list_.emplace_back(name, value);
}

int tdbTool::GetParamCount() const { return static_cast<int>(param_list_.size()); }

const char* tdbTool::GetParamName(int i) const {
  return param_list_[static_cast<std::size_t>(i)].first.c_str();
}

const char* tdbTool::GetParamValue(int i) const {
  return param_list_[static_cast<std::size_t>(i)].second.c_str();
}

int tdbTool::GetParamIndex(const char* name) const {
  const auto found =
      std::ranges::find(param_list_, std::string_view(name == nullptr ? "" : name),
                        [](const auto& pair) { return std::string_view(pair.first); });
  return found == param_list_.end() ? -1 : static_cast<int>(found - param_list_.begin());
}

const char* tdbTool::GetParamValue(const char* name) const {
  const int i = GetParamIndex(name);
  return i < 0 ? "" : GetParamValue(i);
}

bool tdbTool::SetParamValue(int i, const char* value) {
  if (i < 0 || i >= GetParamCount()) return false;
  assign(param_list_[static_cast<std::size_t>(i)].second, value);
  return true;
}

int tdbTool::SetParamValue(const char* name, const char* value) {
  const int i = GetParamIndex(name);
  SetParamValue(i, value);
  return i;
}

void tdbTool::RemoveParam(int i) {
  if (i >= 0 && i < GetParamCount()) param_list_.erase(param_list_.begin() + i);
}

void tdbTool::RemoveAllParams() { param_list_.clear(); }

void tdbTool::AddOffsetParam(const OFFSET_VALUE& value) { offset_list_.push_back(value); }

void tdbTool::AddOffsetParam(int index, const OFFSET_VALUE& value) {
  const auto found = std::ranges::find(offset_list_, index, &OFFSET_VALUE::index);
  if (found == offset_list_.end()) {
    offset_list_.push_back(value);
  } else {
    *found = value;
  }
}

void tdbTool::AddOffsetParam(int index, OFFSET_VALUE::VarIndex field, double value) {
  using VarIndex = OFFSET_VALUE::VarIndex;
  if (field < VarIndex::DX || field > VarIndex::ABS) return;
  const auto found = std::ranges::find(offset_list_, index, &OFFSET_VALUE::index);
  if (found != offset_list_.end()) {
    set_field(*found, field, value);
    return;
  }
  OFFSET_VALUE record;
  record.index = index;
  if (field != VarIndex::ABS) set_field(record, field, value);
  offset_list_.push_back(record);
}

OFFSET_VALUE tdbTool::GetOffsetParam(int i) const {
  const bool in_range = i >= 0 && i < GetOffsetParamCount();
  return in_range ? offset_list_[static_cast<std::size_t>(i)] : OFFSET_VALUE();
}

int tdbTool::GetOffsetParamCount() const { return static_cast<int>(offset_list_.size()); }

void tdbTool::RemoveOffsetParam(int i) {
  if (i >= 0 && i < GetOffsetParamCount()) offset_list_.erase(offset_list_.begin() + i);
}

void tdbTool::RemoveAllOffsetParams() { offset_list_.clear(); }

void tdbTool::AddCutter(tdbToolCutter* cutter) {
  AddItem(cutter);
  SetModified(true);
}

void tdbTool::SetCutter(tdbToolCutter* cutter) { AddCutter(cutter); }

void tdbTool::AddShank(tdbToolShank* shank) {
  AddItem(shank);
  SetModified(true);
}

void tdbTool::SetShank(tdbToolShank* shank) { AddShank(shank); }

void tdbTool::AddHolder(tdbToolHolder* holder) {
  AddItem(holder);
  SetModified(true);
}

int tdbTool::GetCutterCount() const { return part_count<tdbToolCutter>(*this); }
int tdbTool::GetShankCount() const { return part_count<tdbToolShank>(*this); }
int tdbTool::GetHolderCount() const { return part_count<tdbToolHolder>(*this); }

const tdbToolCutter* tdbTool::GetCutter(int i) const { return part_at<tdbToolCutter>(*this, i); }
tdbToolCutter* tdbTool::GetCutter(int i) { return part_at<tdbToolCutter>(*this, i); }
const tdbToolShank* tdbTool::GetShank(int i) const { return part_at<tdbToolShank>(*this, i); }
tdbToolShank* tdbTool::GetShank(int i) { return part_at<tdbToolShank>(*this, i); }
const tdbToolHolder* tdbTool::GetHolder(int i) const { return part_at<tdbToolHolder>(*this, i); }
tdbToolHolder* tdbTool::GetHolder(int i) { return part_at<tdbToolHolder>(*this, i); }

Transformation<double> tdbTool::GetAbsPosCutter(unsigned i) const {
  const tdbToolCutter* cutter = i > static_cast<unsigned>(std::numeric_limits<int>::max())
                                    ? nullptr
                                    : GetCutter(static_cast<int>(i));
  return cutter == nullptr ? Transformation<double>() : cutter->GetAbsPos();
}

void tdbTool::RemoveAllHolders() {
  std::vector<tdbToolHolder*> holders;
  for (tdbToolHolder* holder : tooldb::parts_below<tdbToolHolder>(*this)) {
    // A holder below another one is deleted with it.
    std::vector<tdbItem*> parents;
    holder->GetParents(parents);
    const bool nested = std::ranges::any_of(
        parents, [](tdbItem* parent) { return dynamic_cast<tdbToolHolder*>(parent) != nullptr; });
    if (!nested) holders.push_back(holder);
  }
  for (tdbToolHolder* holder : holders) delete holder;
}

void tdbTool::RemoveAllCutters() {}
void tdbTool::RemoveAllShanks() {}

bool tdbTool::operator==(const tdbTool& other) const {
  return tdbCompositeItem::operator==(other) && description_ == other.description_ &&
         comment_ == other.comment_ && auto_color_ == other.auto_color_ &&
         trace_color_ == other.trace_color_ && param_list_ == other.param_list_ &&
         offset_list_ == other.offset_list_ && tolerance_ == other.tolerance_ &&
         offset_ == other.offset_ && diameter_ == other.diameter_ && delta_z_ == other.delta_z_ &&
         auto_tcp_ == other.auto_tcp_ && sub_type_ == other.sub_type_ &&
         cut_cond_ == other.cut_cond_ && turning_cut_cond_ == other.turning_cut_cond_ &&
         section_enabled_ == other.section_enabled_ && section_start_ == other.section_start_ &&
         section_span_ == other.section_span_ && extension_enabled_ == other.extension_enabled_ &&
         extension_value_ == other.extension_value_ && extension_step_ == other.extension_step_ &&
         extension_max_ == other.extension_max_;
}

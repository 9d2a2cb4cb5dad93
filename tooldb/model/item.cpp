#include "tooldb/item.h"

#include <cmath>

namespace {

bool is_identity(const Transformation<double>& pos) {
  constexpr double kTolerance = 1e-14;
  constexpr Transformation<double> kIdentity;
  for (int row = 0; row < 4; ++row) {
    for (int col = 0; col < 4; ++col) {
      if (!(std::abs(pos(row, col) - kIdentity(row, col)) <= kTolerance)) return false;
    }
  }
  return true;
}

void assign(std::string& field, const char* text) { field = text == nullptr ? "" : text; }

}  // namespace

bool tdbToolMaterial::operator==(const tdbToolMaterial& other) const {
  return red == other.red && green == other.green && blue == other.blue &&
         environmentMap == other.environmentMap && transparency == other.transparency;
}

tdbItem::Placement::Placement(const Placement& other)
    : value_(other.value_ ? std::make_unique<Transformation<double>>(*other.value_) : nullptr) {}

tdbItem::Placement& tdbItem::Placement::operator=(const Placement& other) {
  if (this != &other) Set(other.Get());
  return *this;
}

Transformation<double> tdbItem::Placement::Get() const {
  return value_ ? *value_ : Transformation<double>();
}

void tdbItem::Placement::Set(const Transformation<double>& value) {
  value_ =
      value == Transformation<double>() ? nullptr : std::make_unique<Transformation<double>>(value);
}

tdbItem::tdbItem(int type) : tdbItem(type, std::string(), std::string()) {}

tdbItem::tdbItem(int type, const std::string& name) : tdbItem(type, name, std::string()) {}

tdbItem::tdbItem(int type, const std::string& name, const std::string& code)
    : tdbObject(name, code), material_(0.9F, 0.9F, 0.9F, 0, "steel.jpg"), type_(type) {}

tdbItem::tdbItem(const tdbItem& other)
    : tdbObject(other),
      parent_(other.parent_),
      pos_(other.pos_),
      abs_pos_(other.abs_pos_),
      shape_pos_(other.shape_pos_),
      auxiliary_(other.auxiliary_),
      material_(other.material_),
      shape_file_path_(other.shape_file_path_),
      file_options_(other.file_options_),
      profile_xml_(other.profile_xml_),
      params_(other.params_),
      type_(other.type_),
      file_units_(other.file_units_),
      unit_of_measurement_(other.unit_of_measurement_),
      spinning_(other.spinning_),
      component_(other.component_),
      pos_is_identity_(other.pos_is_identity_),
      hide_shape_(other.hide_shape_) {}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): every field may be assigned to itself.
tdbItem& tdbItem::operator=(const tdbItem& other) {
  tdbObject::operator=(other);
  parent_ = other.parent_;
  pos_ = other.pos_;
  abs_pos_ = other.abs_pos_;
  shape_pos_ = other.shape_pos_;
  auxiliary_ = other.auxiliary_;
  material_ = other.material_;
  shape_file_path_ = other.shape_file_path_;
  file_options_ = other.file_options_;
  profile_xml_ = other.profile_xml_;
  params_ = other.params_;
  type_ = other.type_;
  file_units_ = other.file_units_;
  unit_of_measurement_ = other.unit_of_measurement_;
  spinning_ = other.spinning_;
  component_ = other.component_;
  pos_is_identity_ = is_identity(pos_.Get());
  hide_shape_ = other.hide_shape_;
  return *this;
}

tdbItem::~tdbItem() = default;

std::string tdbItem::GetFileExt() { return ".xml"; }
void tdbItem::SetType(int type) { type_ = type; }
bool tdbItem::IsLeaf() { return true; }
bool tdbItem::IsRoot() { return parent_ == nullptr; }
void tdbItem::Visit(tdbItemCallback callback, void* context) { callback(context, this); }
void tdbItem::HideShape(bool hide) { hide_shape_ = hide; }
bool tdbItem::IsHideShape() { return hide_shape_; }

void tdbItem::Update() {
  if (!IsModified() || parent_ == nullptr) return;
  const Transformation<double> parent = parent_->GetAbsPos();
  abs_pos_.Set(pos_is_identity_ ? parent : parent * pos_.Get());
}

tdbItem* tdbItem::GetRoot() {
  tdbItem* item = this;
  while (item != nullptr && !item->IsRoot()) item = item->GetParent();
  return item;
}

void tdbItem::GetParents(std::vector<tdbItem*>& out) {
  for (tdbItem* item = this; !item->IsRoot();) {
    item = item->GetParent();
    if (item == nullptr) return;
    out.push_back(item);
  }
}

const char* tdbItem::GetParam(const char* name, const char* default_value) const {
  const auto found = params_.find(name);
  return found == params_.end() ? default_value : found->second.c_str();
}

void tdbItem::SetParam(const char* name, const char* value) {
  if (name == nullptr || value == nullptr) return;
  params_[name] = value;
  SetModified(true);
}

void tdbItem::RemoveParams() { params_.clear(); }

Transformation<double> tdbItem::GetPos() const { return pos_.Get(); }

void tdbItem::SetPos(const Transformation<double>& pos) {
  pos_.Set(pos);
  pos_is_identity_ = is_identity(pos);
  SetModified(true);
}

Transformation<double> tdbItem::GetAbsPos() const { return abs_pos_.Get(); }
void tdbItem::SetAbsPos(const Transformation<double>& pos) { abs_pos_.Set(pos); }
Transformation<double> tdbItem::GetShapePos() const { return shape_pos_.Get(); }

void tdbItem::SetShapePos(const Transformation<double>& pos) {
  shape_pos_.Set(pos);
  SetModified(true);
}

void tdbItem::SetShapeFilePath(const char* path) { assign(shape_file_path_, path); }
void tdbItem::SetFileOptions(const char* options) { assign(file_options_, options); }
void tdbItem::SetProfileXml(const char* xml) { assign(profile_xml_, xml); }

bool tdbItem::operator==(const tdbItem& other) const {
  return tdbObject::operator==(other) && type_ == other.type_ && material_ == other.material_ &&
         file_units_ == other.file_units_ && shape_file_path_ == other.shape_file_path_ &&
         file_options_ == other.file_options_ && GetPos() == other.GetPos() &&
         GetShapePos() == other.GetShapePos() && GetAbsPos() == other.GetAbsPos() &&
         profile_xml_ == other.profile_xml_ && component_ == other.component_ &&
         spinning_ == other.spinning_ && params_ == other.params_ &&
         unit_of_measurement_ == other.unit_of_measurement_;
}

#include "tooldb/tool_parts.h"

#include <algorithm>
#include <array>

#include "tooldb/model/text.h"
#include "tooldb/model/type_tables.h"

namespace {

struct Parameter {
  const char* name;
  const char* value;
};

/// The usual parameters of one kind of cutting tool, for its cutter or its shank.
struct UsualParameters {
  int cutting_tool;
  std::array<Parameter, 10> parameters;  ///< in the order they are set; unused ones at the end null
};

constexpr auto kCutterParameters = std::to_array<UsualParameters>({
    {1, {{{"DIAMETER", "20"}, {"SPHERIC_TCPTYPE", "0"}}}},
    {11, {{{"DIAMETER", "5"}, {"SPHERIC_TCPTYPE", "0"}}}},
    {26,
     {{{"DIAMETER", "50"},
       {"DIAMETER3", "40"},
       {"HEIGHT", "100"},
       {"HEIGHT1", "20"},
       {"HEIGHT3", "2"},
       {"ANGLE1", "0"},
       {"FILLET", "0"},
       {"FILLET2", "0"},
       {"FILLET3", "0"},
       {"STANDARD_TCPTYPE", "0"}}}},
});

constexpr auto kShankParameters = std::to_array<UsualParameters>({
    {0, {{{"HEIGHT2", "30"}, {"DIAMETER", "40"}, {"DIAMETER2", "50"}}}},
    {1,
     {{{"HEIGHT", "10"},
       {"HEIGHT2", "80"},
       {"DIAMETER", "10"},
       {"DIAMETER2", "15"},
       {"ANGLE", "75"},
       {"ANGLE2", "0"}}}},
    {3,
     {{{"HEIGHT", "10"},
       {"HEIGHT2", "30"},
       {"DIAMETER", "30"},
       {"DIAMETER2", "45"},
       {"ANGLE", "30"}}}},
    {4,
     {{{"DIAMETER", "30"},
       {"DIAMETER2", "50"},
       {"HEIGHT2", "35"},
       {"HEIGHT", "20"},
       {"ANGLE", "45"},
       {"ANGLE2", "10"}}}},
    {10, {{{"DIAMETER", "40"}, {"DIAMETER2", "50"}}}},
    {11,
     {{{"HEIGHT", "80"},
       {"HEIGHT2", "40"},
       {"HEIGHT3", "0"},
       {"DIAMETER", "3"},
       {"DIAMETER2", "25"},
       {"DIAMETER3", "0"},
       {"ANGLE", "0"},
       {"ANGLE2", "0"}}}},
    {26,
     {{{"DIAMETER1", "20"},
       {"DIAMETER2", "40"},
       {"DIAMETER3", "40"},
       {"HEIGHT", "100"},
       {"HEIGHT1", "20"},
       {"HEIGHT2", "20"},
       {"HEIGHT3", "2"},
       {"ANGLE2", "20"}}}},
});

template <std::size_t N>
void set_usual_parameters(const std::array<UsualParameters, N>& table, int cutting_tool,
                          tdbItem* item) {
  const auto row = std::ranges::find(table, cutting_tool, &UsualParameters::cutting_tool);
  if (item == nullptr || row == table.end()) return;
  for (const Parameter& p : row->parameters) {
    if (p.name != nullptr) item->SetParam(p.name, p.value);
  }
}

template <class Part>
const Part* first_child(const tdbCompositeItem& item) {
  for (unsigned i = 0; i < item.GetItemCount(); ++i) {
    if (const auto* part = dynamic_cast<const Part*>(item.GetItem(i))) return part;
  }
  return nullptr;
}

template <class Part>
Part* first_child(tdbCompositeItem& item) {
  for (unsigned i = 0; i < item.GetItemCount(); ++i) {
    if (auto* part = dynamic_cast<Part*>(item.GetItem(i))) return part;
  }
  return nullptr;
}

template <std::size_t N>
constexpr bool is_one_of(int type, const std::array<int, N>& types) {
  return std::ranges::find(types, type) != types.end();
}

// Type codes whose outline is not built from parameters: custom contours and model files.
constexpr std::array kNotParametricCutters{5, 6, 8, 15};
constexpr std::array kNotParametricShanks{2, 3, 5};
constexpr std::array kNotParametricHolders{2, 3, 4};
// Cutters that are drawn with a spindle that stands still: turning ones.
constexpr std::array kStillCutters{7, 8, 15, 21};

tdbToolMaterial gold() { return {0.9F, 0.9F, 0.0F, 0, "gold.jpg"}; }
tdbToolMaterial grey() { return {0.5F, 0.5F, 0.5F, 0, "steel.jpg"}; }

}  // namespace

tdbToolComponent::tdbToolComponent() : tdbCompositeItem(0) {}
tdbToolComponent::tdbToolComponent(int type) : tdbCompositeItem(type) {}
tdbToolComponent::tdbToolComponent(int type, const std::string& name)
    : tdbCompositeItem(type, name) {}
tdbToolComponent::tdbToolComponent(int type, const std::string& name, const std::string& code)
    : tdbCompositeItem(type, name, code) {}

tdbItem* tdbToolComponent::Clone() const { return new tdbToolComponent(*this); }
std::string tdbToolComponent::GetFileExt() { return std::string(tooldb::kComponentFileExtension); }
bool tdbToolComponent::IsSTL() { return false; }
bool tdbToolComponent::IsParametric() const { return false; }
bool tdbToolComponent::HasShape() { return false; }

tdbCuttingTool::tdbCuttingTool(int type) : tdbCompositeItem(type) {}

tdbCuttingTool::tdbCuttingTool(tdbToolCutter* cutter, tdbToolShank* shank, int type)
    : tdbCompositeItem(type) {
  tdbCompositeItem::AddItem(cutter);
  tdbCompositeItem::AddItem(shank);
}

tdbItem* tdbCuttingTool::Clone() const { return new tdbCuttingTool(*this); }
bool tdbCuttingTool::IsSTL() { return false; }
bool tdbCuttingTool::IsParametric() const { return true; }
bool tdbCuttingTool::HasShape() { return false; }

void tdbCuttingTool::HideShape(bool hide) {
  tdbCompositeItem::HideShape(hide);
  for (unsigned i = 0; i < GetItemCount(); ++i) GetItem(i)->HideShape(hide);
}

std::string tdbCuttingTool::GetTypeName() const {
  return std::string(tooldb::type_name(tooldb::kCuttingToolTypes, GetType(), "UNDEF"));
}

int tdbCuttingTool::GetTypeByName(const std::string& name) {
  return tooldb::type_code(tooldb::kCuttingToolTypes, name).value_or(-1);
}

void tdbCuttingTool::InitCutterParams() {
  set_usual_parameters(kCutterParameters, GetType(), GetCutter());
}

void tdbCuttingTool::InitShankParams() {
  set_usual_parameters(kShankParameters, GetType(), GetShank());
}

void tdbCuttingTool::InitParams() {
  InitCutterParams();
  InitShankParams();
}

const tdbToolCutter* tdbCuttingTool::GetCutter() const { return first_child<tdbToolCutter>(*this); }
tdbToolCutter* tdbCuttingTool::GetCutter() { return first_child<tdbToolCutter>(*this); }
const tdbToolShank* tdbCuttingTool::GetShank() const { return first_child<tdbToolShank>(*this); }
tdbToolShank* tdbCuttingTool::GetShank() { return first_child<tdbToolShank>(*this); }

tdbToolCutter::tdbToolCutter() : tdbItem(0) {
  SetMaterial(gold());
  SetEnableSpinning(true);
}

tdbToolCutter::tdbToolCutter(int type) : tdbItem(type) {
  SetMaterial(gold());
  SetEnableSpinning(!is_one_of(type, kStillCutters));
  InitProfile(type);
}

tdbItem* tdbToolCutter::Clone() const { return new tdbToolCutter(*this); }
std::string tdbToolCutter::GetFileExt() { return tdbItem::GetFileExt(); }
bool tdbToolCutter::IsSTL() { return GetType() == 6 || GetType() == 15; }
bool tdbToolCutter::IsParametric() const { return !is_one_of(GetType(), kNotParametricCutters); }
bool tdbToolCutter::HasShape() { return true; }

tdbToolShank::tdbToolShank(int type) : tdbCompositeItem(type) {
  SetMaterial(grey());
  SetEnableSpinning(true);
  InitProfile();
}

tdbItem* tdbToolShank::Clone() const { return new tdbToolShank(*this); }
std::string tdbToolShank::GetFileExt() { return tdbItem::GetFileExt(); }
bool tdbToolShank::IsSTL() { return GetType() == 3; }
bool tdbToolShank::IsParametric() const { return !is_one_of(GetType(), kNotParametricShanks); }
bool tdbToolShank::HasShape() { return true; }

tdbToolHolder::tdbToolHolder(int type) : tdbCompositeItem(type) { SetEnableSpinning(type == 2); }

tdbItem* tdbToolHolder::Clone() const { return new tdbToolHolder(*this); }
std::string tdbToolHolder::GetFileExt() { return tdbItem::GetFileExt(); }
bool tdbToolHolder::IsSTL() { return GetType() == 3; }
bool tdbToolHolder::IsParametric() const { return !is_one_of(GetType(), kNotParametricHolders); }
bool tdbToolHolder::HasShape() { return true; }

tdbFixedLink::tdbFixedLink(int type) : tdbCompositeItem(type) {}

tdbItem* tdbFixedLink::Clone() const { return new tdbFixedLink(*this); }
bool tdbFixedLink::IsSTL() { return false; }
bool tdbFixedLink::IsParametric() const { return false; }
void tdbFixedLink::Update() { tdbCompositeItem::Update(); }
bool tdbFixedLink::HasShape() { return false; }

tdbToolAngleHead::tdbToolAngleHead(int type) : tdbCompositeItem(type) {}

tdbItem* tdbToolAngleHead::Clone() const { return new tdbToolAngleHead(*this); }
bool tdbToolAngleHead::IsSTL() { return GetType() != 0; }
bool tdbToolAngleHead::IsParametric() const { return static_cast<unsigned>(GetType()) > 1U; }
bool tdbToolAngleHead::HasShape() { return false; }

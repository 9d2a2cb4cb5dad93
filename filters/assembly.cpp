#include "filters/assembly.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace tooldb {
namespace {

/// What a kind of cutting tool is made of: type codes of its cutter and shank.
struct Parts {
  CuttingKind kind;
  int cutter;
  int shank;
};

constexpr int kRevolvedCutter = 5;
constexpr int kInsertCutter = 7;
constexpr int kExtrudedCutter = 8;
constexpr int kSteppedShank = 0;
constexpr int kRevolvedShank = 2;
constexpr int kRevolvedHolder = 2;

constexpr auto kParts = std::to_array<Parts>({
    {CuttingKind::kFlatEnd, 0, 0},
    {CuttingKind::kLollipop, 1, 0},
    {CuttingKind::kProfile2d, kRevolvedCutter, kSteppedShank},
    {CuttingKind::kBullNose, 2, 0},
    {CuttingKind::kStandard, 3, 0},
    {CuttingKind::kChamfer1, 9, 6},
    {CuttingKind::kChamfer2, 10, 7},
    {CuttingKind::kCornerRounding, 12, 9},
    {CuttingKind::kDrill, 4, 0},
    {CuttingKind::kProbe, 1, 0},
    {CuttingKind::kDisc, 16, 11},
    {CuttingKind::kTap, 13, 10},
    {CuttingKind::kBore, 11, 8},
});

const Parts& parts_of(CuttingKind kind) {
  const auto* row = std::ranges::find(kParts, kind, &Parts::kind);
  return row == kParts.end() ? kParts.front() : *row;
}

void set_number(tdbItem& item, std::string_view name, double value) {
  item.SetParam(std::string(name).c_str(), number_text(value).c_str());
}

template <class Item>
std::unique_ptr<Item> new_item(int type, const char* name, LengthUnit unit) {
  auto item = std::make_unique<Item>(type);
  item->RemoveParams();
  item->SetName(name);
  item->SetUnitOfMeasurement(static_cast<int>(unit));
  return item;
}

std::unique_ptr<tdbToolCutter> new_cutter(const CutterPlan& plan, int type, LengthUnit unit) {
  auto cutter = new_item<tdbToolCutter>(type, "Cutter", unit);
  for (const auto& [name, value] : plan.dimensions) set_number(*cutter, name, value);
  if (!plan.outline.empty()) cutter->SetProfileXml(plan.outline.c_str());
  return cutter;
}

bool has_outline(const tdbToolCutter& cutter) {
  tdbToolCutter trial(cutter);
  return trial.BuildProfile();
}

double dimension(const CutterPlan& plan, std::string_view name) {
  for (const auto& [key, value] : plan.dimensions) {
    if (key == name) return value;
  }
  return 0;
}

/// The plain cylinder around a plan that makes no outline.
CutterPlan cylinder_around(const CutterPlan& plan) {
  CutterSize size;
  size.diameter = dimension(plan, "DIAMETER");
  size.cutting_length = plan.top;
  CutterPlan plain = plain_cutter(size);
  plain.remarks = plan.remarks;
  plain.remarks.emplace_back("the dimensions make no outline of this kind; drawn as a cylinder");
  return plain;
}

std::unique_ptr<tdbToolShank> new_stepped_shank(const CutterPlan& plan, const ShankSize& size,
                                                LengthUnit unit) {
  const double neck_end =
      size.neck_diameter > 0 ? std::clamp(size.neck_end, plan.top, size.overall) : plan.top;
  auto shank = new_item<tdbToolShank>(parts_of(plan.kind).shank, "Shank", unit);
  const bool necked = neck_end - plan.top > 1e-9;
  set_number(*shank, "DIAMETER", necked ? size.neck_diameter : size.diameter);
  set_number(*shank, "HEIGHT", necked ? neck_end - plan.top : 0);
  set_number(*shank, "ANGLE", 0);
  set_number(*shank, "DIAMETER2", size.diameter);
  set_number(*shank, "HEIGHT2", size.overall - neck_end);
  set_number(*shank, "ANGLE2", 0);
  set_number(*shank, "DIAMETER3", 0);
  set_number(*shank, "HEIGHT3", 0);
  return shank;
}

std::unique_ptr<tdbToolShank> new_outlined_shank(const CutterPlan& plan, const ShankSize& size,
                                                 LengthUnit unit) {
  std::vector<ConeSection> sections;
  if (size.neck_end > plan.top && size.neck_diameter > 0) {
    sections.push_back({size.neck_end - plan.top, size.neck_diameter, size.neck_diameter});
  }
  sections.insert(sections.end(), size.shaft.begin(), size.shaft.end());
  sections = cut_off_at(sections, size.overall - plan.top);
  const double rest = size.overall - plan.top - total_height(sections);
  if (rest > 1e-9) sections.push_back({rest, size.diameter, size.diameter});
  auto shank = new_item<tdbToolShank>(kRevolvedShank, "Shank", unit);
  shank->SetProfileXml(stacked_outline(sections).c_str());
  shank->SetPos(raised(plan.top));
  return shank;
}

std::unique_ptr<tdbToolShank> new_shank(const CutterPlan& plan, ShankSize size, LengthUnit unit) {
  if (size.diameter <= 0) size.diameter = plan.top_diameter;
  if (size.overall <= plan.top * (1 + 1e-9) || size.diameter <= 0) return nullptr;
  return size.shaft.empty() ? new_stepped_shank(plan, size, unit)
                            : new_outlined_shank(plan, size, unit);
}

std::unique_ptr<tdbCuttingTool> joined(std::unique_ptr<tdbToolCutter> cutter,
                                       std::unique_ptr<tdbToolShank> shank, CuttingKind kind) {
  auto tool =
      std::make_unique<tdbCuttingTool>(cutter.release(), shank.release(), static_cast<int>(kind));
  tool->SetName("CuttingTool");
  tool->SetUnitOfMeasurement(tool->GetCutter()->GetUnitOfMeasurement());
  return tool;
}

void set_component_mark(void*, tdbItem* item) { item->SetItemComponent(true); }

}  // namespace

Transformation<double> raised(double z) {
  Transformation<double> placement;
  placement(2, 3) = z;
  return placement;
}

std::unique_ptr<tdbCuttingTool> make_cutting_tool(CutterPlan& plan, const ShankSize& shank,
                                                  LengthUnit unit) {
  auto cutter = new_cutter(plan, parts_of(plan.kind).cutter, unit);
  if (!plan.dimensions.empty() && !has_outline(*cutter)) {
    plan = cylinder_around(plan);
    cutter = new_cutter(plan, parts_of(plan.kind).cutter, unit);
  }
  if (shank.overall > 0 && plan.top > shank.overall * (1 + 1e-9)) {
    plan.remarks.push_back("the cutting part is longer than the overall length " +
                           number_text(shank.overall));
  }
  auto body = new_shank(plan, shank, unit);
  return joined(std::move(cutter), std::move(body), plan.kind);
}

std::unique_ptr<tdbCuttingTool> make_insert(CutterPlan& plan, const std::string& shape,
                                            LengthUnit unit) {
  auto cutter = new_cutter(plan, kInsertCutter, unit);
  if (!shape.empty()) cutter->SetParam("INSERT_SHAPE", shape.c_str());
  if (!has_outline(*cutter)) {
    plan.remarks.emplace_back("the dimensions make no outline of this insert");
  }
  return joined(std::move(cutter), nullptr, plan.kind);
}

std::unique_ptr<tdbCuttingTool> make_extruded_cutter(const CutterPlan& plan, LengthUnit unit) {
  return joined(new_cutter(plan, kExtrudedCutter, unit), nullptr, plan.kind);
}

std::unique_ptr<tdbToolHolder> make_holder(const std::string& name, const std::string& outline,
                                           LengthUnit unit) {
  auto holder = new_item<tdbToolHolder>(kRevolvedHolder, "Holder", unit);
  if (!name.empty()) holder->SetName(name);
  holder->SetProfileXml(outline.c_str());
  return holder;
}

std::unique_ptr<tdbToolComponent> make_holder_component(const std::string& code,
                                                        std::unique_ptr<tdbToolHolder> holder) {
  auto component = std::make_unique<tdbToolComponent>(0, code, code);
  component->SetUnitOfMeasurement(holder->GetUnitOfMeasurement());
  component->AddItem(holder.release());
  component->Visit(set_component_mark, nullptr);
  return component;
}

std::unique_ptr<tdbToolComponent> make_component_use(const tdbToolComponent& component) {
  auto use = std::make_unique<tdbToolComponent>(component);
  use->SetItemComponent(false);
  return use;
}

}  // namespace tooldb

#include "filters/fusion_types.h"

#include <algorithm>
#include <array>

namespace tooldb {
namespace {

constexpr auto kCommonFields = std::to_array<FusionField>({
    {"DC", &FusionSize::diameter},
    {"LCF", &FusionSize::cutting_length},
    {"SFDM", &FusionSize::shank_diameter},
    {"OAL", &FusionSize::overall},
    {"LB", &FusionSize::stickout},
    {"assemblyGaugeLength", &FusionSize::gauge_length},
    {"shoulder-length", &FusionSize::neck_end},
    {"shoulder-diameter", &FusionSize::neck_diameter},
});
constexpr auto kRadiusFields = std::to_array<FusionField>({
    {"RE", &FusionSize::corner_radius},
});
constexpr auto kConeFields = std::to_array<FusionField>({
    {"TA", &FusionSize::side_angle},
    {"tip-diameter", &FusionSize::tip_diameter},
});
constexpr auto kTaperFields = std::to_array<FusionField>({
    {"TA", &FusionSize::side_angle},
    {"RE", &FusionSize::corner_radius},
});
constexpr auto kFaceFields = std::to_array<FusionField>({
    {"TA", &FusionSize::side_angle},
    {"RE", &FusionSize::corner_radius},
    {"DCX", &FusionSize::largest_diameter},
});
constexpr auto kRoundingFields = std::to_array<FusionField>({
    {"RE", &FusionSize::corner_radius},
    {"DCX", &FusionSize::largest_diameter},
});
constexpr auto kFlankFields = std::to_array<FusionField>({
    {"TA", &FusionSize::side_angle},
});
constexpr auto kPointFields = std::to_array<FusionField>({
    {"SIG", &FusionSize::point_angle},
});
constexpr auto kTapFields = std::to_array<FusionField>({
    {"TP", &FusionSize::pitch},
});
constexpr auto kThreadFields = std::to_array<FusionField>({
    {"TP", &FusionSize::pitch},
    {"NT", &FusionSize::row_count},
    {"thread-profile-angle", &FusionSize::thread_angle},
});
constexpr auto kArcFields = std::to_array<FusionField>({
    {"profile-radius", &FusionSize::profile_radius},
});

void adjust_ball(FusionSize& size, std::vector<std::string>&) {
  if (size.corner_radius <= 0) size.corner_radius = size.diameter / 2;
}

void adjust_corner_rounding(FusionSize& size, std::vector<std::string>&) {
  size.tip_diameter = size.diameter;
}

void adjust_neck(FusionSize& size, std::vector<std::string>&) {
  if (size.neck_diameter <= 0) size.neck_diameter = size.shank_diameter;
}

void adjust_probe(FusionSize& size, std::vector<std::string>& remarks) {
  adjust_neck(size, remarks);
  if (size.overall <= 0) size.overall = size.stickout;
}

void adjust_thread_mill(FusionSize& size, std::vector<std::string>& remarks) {
  size.rows = static_cast<int>(std::clamp(size.row_count, 0.0, 1000.0));
  size.side_angle = size.thread_angle / 2;
  remarks.emplace_back("thread profile drawn from pitch and flank angle");
}

using Class = FusionClass;

constexpr FusionType cutter(std::string_view name, ToolKind kind, CutterRecipe recipe,
                            std::span<const FusionField> fields,
                            void (*adjust)(FusionSize&, std::vector<std::string>&) = nullptr) {
  return {name, Class::kCutter, kind, recipe, fields, adjust};
}

constexpr FusionType other(std::string_view name, Class form, ToolKind kind = ToolKind::kMill) {
  return {name, form, kind, nullptr, {}, nullptr};
}

constexpr auto kTypes = std::to_array<FusionType>({
    cutter("flat end mill", ToolKind::kMill, plain_cutter, {}),
    cutter("ball end mill", ToolKind::kMill, bull_nose_cutter, kRadiusFields, adjust_ball),
    cutter("bull nose end mill", ToolKind::kMill, bull_nose_cutter, kRadiusFields),
    cutter("chamfer mill", ToolKind::kMill, chamfer_cutter, kConeFields),
    cutter("face mill", ToolKind::kFaceMill, face_cutter, kFaceFields),
    cutter("radius mill", ToolKind::kMill, corner_rounding_cutter, kRoundingFields,
           adjust_corner_rounding),
    cutter("slot mill", ToolKind::kDisc, disc_cutter, kRadiusFields, adjust_neck),
    cutter("dovetail mill", ToolKind::kMill, dovetail_cutter, kFlankFields, adjust_neck),
    cutter("lollipop mill", ToolKind::kMill, lollipop_cutter, {}, adjust_neck),
    cutter("tapered mill", ToolKind::kMill, tapered_cutter, kTaperFields),
    other("form mill", Class::kForm),
    cutter("thread mill", ToolKind::kMill, thread_mill_cutter, kThreadFields, adjust_thread_mill),
    cutter("circle segment barrel", ToolKind::kMill, barrel_cutter, kArcFields),
    cutter("circle segment lens", ToolKind::kMill, lens_cutter, kArcFields),
    cutter("circle segment oval", ToolKind::kMill, barrel_cutter, kArcFields),
    cutter("circle segment taper", ToolKind::kMill, barrel_cutter, kArcFields),
    cutter("drill", ToolKind::kDrill, drill_cutter, kPointFields),
    cutter("spot drill", ToolKind::kDrill, drill_cutter, kPointFields),
    cutter("center drill", ToolKind::kDrill, drill_cutter, kPointFields),
    cutter("counter sink", ToolKind::kDrill, drill_cutter, kPointFields),
    cutter("reamer", ToolKind::kDrill, reamer_cutter, kPointFields),
    cutter("counter bore", ToolKind::kDrill, plain_cutter, {}),
    cutter("boring bar", ToolKind::kBore, boring_bar_cutter, kRadiusFields, adjust_neck),
    cutter("tap right hand", ToolKind::kTap, tap_cutter, kTapFields),
    cutter("tap left hand", ToolKind::kTap, tap_cutter, kTapFields),
    cutter("probe", ToolKind::kProbe, probe_cutter, {}, adjust_probe),
    other("turning general", Class::kInsert, ToolKind::kTurning),
    other("turning boring", Class::kInsert, ToolKind::kTurning),
    other("turning grooving", Class::kGroove, ToolKind::kTurning),
    other("turning threading", Class::kGroove, ToolKind::kTurning),
    other("holder", Class::kHolder),
    other("waterjet", Class::kJet),
    other("laser cutter", Class::kJet),
    other("plasma cutter", Class::kJet),
});

}  // namespace

std::span<const FusionField> common_fusion_fields() { return kCommonFields; }

std::span<const FusionType> fusion_types() { return kTypes; }

const FusionType* find_fusion_type(std::string_view name) {
  const auto* type = std::ranges::find(kTypes, name, &FusionType::name);
  return type == kTypes.end() ? nullptr : type;
}

}  // namespace tooldb

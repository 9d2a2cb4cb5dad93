#include "filters/freecad_shapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "filters/plain_text.h"

namespace tooldb {
namespace {

constexpr auto kCommonFields = std::to_array<BitField>({
    {"diameter", &BitSize::diameter},
    {"length", &BitSize::overall},
    {"shankdiameter", &BitSize::shank_diameter},
    {"cuttingedgeheight", &BitSize::cutting_length},
    {"stickout", &BitSize::stickout},
});
constexpr auto kBallFields = std::to_array<BitField>({
    {"balldiameter", &BitSize::ball_diameter},
    {"tipradius", &BitSize::tip_radius},
});
constexpr auto kBullNoseFields = std::to_array<BitField>({
    {"cornerradius", &BitSize::corner_radius},
    {"torusradius", &BitSize::corner_radius},
    {"flatradius", &BitSize::flat_radius},
});
constexpr auto kConeFields = std::to_array<BitField>({
    {"cuttingedgeangle", &BitSize::included_angle, Dimension::kAngle},
    {"tipdiameter", &BitSize::tip_diameter},
});
constexpr auto kDrillFields = std::to_array<BitField>({
    {"tipangle", &BitSize::point_angle, Dimension::kAngle},
});
constexpr auto kTapFields = std::to_array<BitField>({
    {"tipangle", &BitSize::point_angle, Dimension::kAngle},
    {"pitch", &BitSize::pitch},
    {"cuttingedgelength", &BitSize::cutting_length},
});
constexpr auto kToothFields = std::to_array<BitField>({
    {"cuttingangle", &BitSize::included_angle, Dimension::kAngle},
    {"crest", &BitSize::crest},
    {"dovetailheight", &BitSize::cutting_length},
    {"neckdiameter", &BitSize::neck_diameter},
    {"necklength", &BitSize::neck_length},
});
constexpr auto kRadiusFields = std::to_array<BitField>({
    {"cuttingradius", &BitSize::corner_radius},
    {"tipdiameter", &BitSize::tip_diameter},
});
constexpr auto kSawFields = std::to_array<BitField>({
    {"bladethickness", &BitSize::cutting_length},
});
constexpr auto kTaperFields = std::to_array<BitField>({
    {"taperangle", &BitSize::included_angle, Dimension::kAngle},
    {"taperdiameter", &BitSize::largest_diameter},
});
constexpr auto kProbeFields = std::to_array<BitField>({
    {"shaftdiameter", &BitSize::shank_diameter},
});
constexpr auto kInsertFields = std::to_array<BitField>({
    {"edgelength", &BitSize::edge_length},
    {"tipangle", &BitSize::point_angle, Dimension::kAngle},
    {"tipradius", &BitSize::corner_radius},
});

double half_tangent(double angle) { return std::tan(angle * std::numbers::pi / 360); }

void no_adjustment(BitSize&, std::vector<std::string>&) {}

void adjust_ball(BitSize& size, std::vector<std::string>&) {
  size.corner_radius = size.tip_radius > 0 ? size.tip_radius : size.ball_diameter / 2;
  if (size.corner_radius <= 0) size.corner_radius = size.diameter / 2;
}

void adjust_bull_nose(BitSize& size, std::vector<std::string>& remarks) {
  if (size.corner_radius > 0) return;
  if (size.flat_radius > 0 && size.flat_radius < size.diameter / 2) {
    size.corner_radius = size.diameter / 2 - size.flat_radius;
  } else {
    remarks.emplace_back("no corner radius is given; drawn with sharp corners");
  }
}

void adjust_cone(BitSize& size, std::vector<std::string>&) {
  size.side_angle = size.included_angle / 2;
}

void adjust_dovetail(BitSize& size, std::vector<std::string>& remarks) {
  size.side_angle = 90 - size.included_angle;
  remarks.emplace_back("CuttingAngle is taken as the angle between flank and bottom");
}

void adjust_thread_mill(BitSize& size, std::vector<std::string>& remarks) {
  // One tooth, down to the neck.
  const double flank =
      size.included_angle > 0 && size.included_angle < 180 ? size.included_angle : 60;
  const double neck = size.neck_diameter > 0 && size.neck_diameter < size.diameter
                          ? size.neck_diameter
                          : size.diameter * 0.7;
  size.side_angle = flank / 2;
  size.pitch = size.crest + (size.diameter - neck) * half_tangent(flank);
  size.rows = 1;
  remarks.emplace_back("drawn as one tooth");
}

void adjust_radius(BitSize& size, std::vector<std::string>&) {
  size.largest_diameter = size.diameter;
}

void adjust_taper(BitSize& size, std::vector<std::string>& remarks) {
  size.side_angle = size.included_angle / 2;
  if (size.included_angle > 0) remarks.emplace_back("TaperAngle is taken as the included angle");
}

void adjust_probe(BitSize& size, std::vector<std::string>&) {
  size.neck_diameter = size.shank_diameter;
}

constexpr auto kShapes = std::to_array<BitShape>({
    {"endmill", plain_cutter, ToolKind::kMill, {}, no_adjustment},
    {"ballend", bull_nose_cutter, ToolKind::kMill, kBallFields, adjust_ball},
    {"bullnose", bull_nose_cutter, ToolKind::kMill, kBullNoseFields, adjust_bull_nose},
    {"torus", bull_nose_cutter, ToolKind::kMill, kBullNoseFields, adjust_bull_nose},
    {"chamfer", pointed_cutter, ToolKind::kMill, kConeFields, adjust_cone},
    {"vbit", pointed_cutter, ToolKind::kMill, kConeFields, adjust_cone},
    {"drill", drill_cutter, ToolKind::kDrill, kDrillFields, no_adjustment},
    {"reamer", reamer_cutter, ToolKind::kDrill, kDrillFields, no_adjustment},
    {"tap", tap_cutter, ToolKind::kTap, kTapFields, no_adjustment},
    {"threadmill", thread_mill_cutter, ToolKind::kMill, kToothFields, adjust_thread_mill},
    {"dovetail", dovetail_cutter, ToolKind::kMill, kToothFields, adjust_dovetail},
    {"radius", corner_rounding_cutter, ToolKind::kMill, kRadiusFields, adjust_radius},
    {"fillet", corner_rounding_cutter, ToolKind::kMill, kRadiusFields, adjust_radius},
    {"roundover", corner_rounding_cutter, ToolKind::kMill, kRadiusFields, adjust_radius},
    {"slittingsaw", disc_cutter, ToolKind::kDisc, kSawFields, no_adjustment},
    {"taperedballnose", tapered_ball_cutter, ToolKind::kMill, kTaperFields, adjust_taper},
    {"probe", probe_cutter, ToolKind::kProbe, kProbeFields, adjust_probe},
});

}  // namespace

std::span<const BitField> common_bit_fields() { return kCommonFields; }

std::span<const BitField> insert_bit_fields() { return kInsertFields; }

std::string bit_shape_key(std::string_view name) {
  std::string key = lower_case(without_extension(last_path_part(trimmed_text(name))));
  std::erase_if(key, [](char c) { return c == '-' || c == '_' || c == ' '; });
  return key;
}

const BitShape* find_bit_shape(std::string_view key) {
  const auto* shape = std::ranges::find(kShapes, key, &BitShape::name);
  return shape == kShapes.end() ? nullptr : shape;
}

}  // namespace tooldb

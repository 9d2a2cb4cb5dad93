#include "tooldb/xml/older_attributes.h"

#include <array>
#include <string_view>

#include "geom/number_text.h"
#include "tooldb/xml/grammar.h"

namespace tooldb {
namespace {

constexpr int kFirstVersionWithCode = 4;

using Data = tdbLegacyToolData;

struct NumberRow {
  std::string_view name;
  double Data::*field;
};
constexpr auto kNumbers = std::to_array<NumberRow>({
    {att::kLength, &Data::length},
    {"CUTFIN_TOL", &Data::cutfin_tolerance},
    {"SHANKWORKPIECE_TOL", &Data::shank_workpiece_tolerance},
    {"SMAX", &Data::max_spindle},
    {"FMAX", &Data::max_feed},
    {"SMIN", &Data::min_spindle},
    {"FMIN", &Data::min_feed},
    {"MAX_VOL_REMOVE", &Data::max_volume_removed},
    {"CHIP_THICKNESS", &Data::chip_thickness},
    {"APPROACH_ANGLE", &Data::approach_angle},
    {"RAKE_ANGLE", &Data::rake_angle},
    {"SAMPLES_OFFSET", &Data::samples_offset},
    {"STEP_SIZE_OF_SAMPLING", &Data::step_size_of_sampling},
});

// Of these, "-1" means that none is given.
constexpr auto kRegions = std::to_array<NumberRow>({
    {"CUTREGION_Z", &Data::cut_region_z},
    {"CUTREGION_R", &Data::cut_region_r},
});

struct IntegerRow {
  std::string_view name;
  int Data::*field;
};
constexpr auto kIntegers = std::to_array<IntegerRow>({
    {"INSERT_NUMBER", &Data::insert_number},
    {"TOOL_MODEL_ACCURACY", &Data::model_accuracy},
});

struct FlagRow {
  std::string_view name;
  bool Data::*field;
};
constexpr auto kFlags = std::to_array<FlagRow>({
    {"TCP", &Data::tcp},
    {"ENABLE_CUTREGION_Z", &Data::enable_cut_region_z},
    {"DATA_REC", &Data::data_recording},
    {"CHECK_SMAX", &Data::check_max_spindle},
    {"CHECK_FMAX", &Data::check_max_feed},
    {"CHECK_INPUT_POWER_AND_TORQUE", &Data::check_power_and_torque},
});

constexpr std::string_view kTraceColorRgb = "TRACECOLOR_RGB";

// Hands every attribute that has a row to `take`; true when there was one.
template <class Rows, class Take>
bool take_all(const Element& element, const Rows& rows, Take&& take) {
  bool any = false;
  for (const auto& row : rows) {
    const auto text = find_attribute(element, row.name);
    if (!text) continue;
    take(row.field, *text);
    any = true;
  }
  return any;
}

}  // namespace

std::string code_of(const Element& element) {
  const bool has_version = has_attribute(element, att::kVersion);
  const bool older = has_version && integer(element, att::kVersion) < kFirstVersionWithCode;
  if (older) return clean_name(attribute(element, att::kId));
  const std::string code = clean_name(attribute(element, att::kCode));
  return code.empty() && !has_version ? clean_name(attribute(element, att::kId)) : code;
}

void read_older_attributes(const Element& element, tdbTool& tool) {
  Data data;
  data.code = code_of(element);
  bool any = !data.code.empty();
  any |= take_all(element, kNumbers, [&data](double Data::*field, std::string_view text) {
    data.*field = leading_number(text);
  });
  any |= take_all(element, kRegions, [&data](double Data::*field, std::string_view text) {
    if (text != "-1") data.*field = leading_number(text);
  });
  any |= take_all(element, kIntegers, [&data](int Data::*field, std::string_view text) {
    data.*field = leading_integer(text);
  });
  any |= take_all(element, kFlags, [&data](bool Data::*field, std::string_view text) {
    data.*field = is_true(text);
  });
  data.trace_color_rgb = attribute(element, kTraceColorRgb);
  any |= !data.trace_color_rgb.empty();
  if (any) tool.SetLegacyData(data);
}

}  // namespace tooldb

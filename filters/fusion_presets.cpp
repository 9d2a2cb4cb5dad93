#include "filters/fusion_presets.h"

#include <algorithm>

namespace tooldb {
namespace {

/// Conditions are in millimetres whatever the tool's unit; so are feeds, per minute.
std::optional<double> length_of(JsonFields& preset, const char* key, LengthUnit unit) {
  const std::optional<double> value = preset.Number(key);
  if (!value || *value <= 0) return std::nullopt;
  return length_in(*value, unit, LengthUnit::kMillimetre);
}

template <class Conditions>
void set_common(JsonFields& preset, const char* chip, LengthUnit unit, Conditions& conditions) {
  if (const auto speed = preset.Number("n"); speed && *speed > 0) {
    conditions.GetVerifySpindle().maximum = *speed;
  }
  if (const auto feed = length_of(preset, "v_f", unit)) {
    conditions.GetVerifyFeed().maximum = *feed;
  }
  if (const auto thickness = length_of(preset, chip, unit)) {
    tdbOptimQuantity& quantity = conditions.GetOptimChipThickness();
    quantity.optimal = *thickness;
    quantity.maximum = std::max(quantity.maximum, *thickness);
  }
}

void take_over(const Json& first, EntryBuilder& builder) {
  JsonFields preset(first);
  const bool turning = builder.Tool().IsTurningTool();
  if (turning) {
    tdbTurningCutCond& conditions = builder.Tool().GetTurningCutCond();
    set_common(preset, "f_n", builder.Unit(), conditions);
    if (const auto depth = length_of(preset, "depth-of-cut", builder.Unit())) {
      conditions.SetAp(*depth);
    }
  } else {
    tdbCutCond& conditions = builder.Tool().GetCutCond();
    set_common(preset, "f_z", builder.Unit(), conditions);
    const bool used = preset.Flag("use-stepdown").value_or(false);
    if (const auto depth = length_of(preset, "stepdown", builder.Unit()); used && depth) {
      conditions.SetAp(*depth);
    }
  }
  builder.Mapped("first preset");
}

}  // namespace

void read_fusion_presets(const Json& start_values, EntryBuilder& builder) {
  const auto keep = [&builder](const std::string& name, std::string_view value) {
    if (!value.empty()) builder.Keep(name, value);
  };
  JsonFields fields(start_values);
  const Json* presets = fields.Read("presets");
  if (presets != nullptr && presets->is_array()) {
    if (!presets->empty()) take_over(presets->front(), builder);
    flatten_json("FUSION.PRESET", *presets, keep);
  } else if (presets != nullptr) {
    flatten_json("FUSION.start-values.presets", *presets, keep);
  }
  fields.KeepUnread("FUSION.start-values", keep);
}

}  // namespace tooldb

#include "apps/condition_slots.h"

#include <array>
#include <string_view>

#include "tooldb/tool.h"

namespace tooldb {
namespace {

using Kind = ConditionSlot::Kind;

template <class T>
constexpr Kind kKindOf = std::is_same_v<T, bool>  ? Kind::kFlag
                         : std::is_same_v<T, int> ? Kind::kCount
                                                  : Kind::kNumber;

template <class C>
struct ValueRow {
  std::string_view name;
  Kind kind;
  double (*get)(const C& conditions);
  void (*set)(C& conditions, double value);
};

template <class C, class Quantity>
struct QuantityRow {
  std::string_view name;
  Quantity& (C::*get)();
};

template <auto Get, auto Set, class C, class T>
constexpr ValueRow<C> row_of(std::string_view name, T (C::*)() const) {
  return {name, kKindOf<T>, [](const C& c) { return static_cast<double>((c.*Get)()); },
          [](C& c, double value) { (c.*Set)(static_cast<T>(value)); }};
}

// A pair of accessors as a row.
template <auto Get, auto Set>
constexpr auto row(std::string_view name) {
  return row_of<Get, Set>(name, Get);
}

// What milling and turning have in common.
template <class C>
struct SharedTables {
  static constexpr auto kFeeds = std::to_array<ValueRow<C>>({
      row<&C::GetOptimizationCriteria, &C::SetOptimizationCriteria>("optimize.criteria"),
      row<&C::GetAirCutFeed, &C::SetAirCutFeed>("optimize.feed.air_cut"),
      row<&C::GetInCutFeedLimit, &C::SetInCutFeedLimit>("optimize.feed.in_cut"),
      row<&C::GetMaxProgrammedFeed, &C::SetMaxProgrammedFeed>("optimize.feed.max_programmed"),
      row<&C::GetMinProgrammedFeed, &C::SetMinProgrammedFeed>("optimize.feed.min_programmed"),
  });
  static constexpr auto kRanges = std::to_array<QuantityRow<C, tdbVerifyMinMaxQuantity>>(
      {{"verify.feed", &C::GetVerifyFeed}, {"verify.spindle", &C::GetVerifySpindle}});
};

template <class C>
struct Tables;

template <>
struct Tables<tdbCutCond> : SharedTables<tdbCutCond> {
  using C = tdbCutCond;

  static constexpr auto kValues = std::to_array<ValueRow<C>>({
      row<&C::GetNumberOfInsert, &C::SetNumberOfInsert>("inserts"),
      row<&C::GetRakeAngle, &C::SetRakeAngle>("rake_angle"),
      row<&C::GetApproachAngle, &C::SetApproachAngle>("approach_angle"),
      row<&C::GetDc, &C::SetDc>("dc"),
      row<&C::GetDi, &C::SetDi>("di"),
      row<&C::GetAp, &C::SetAp>("ap"),
      row<&C::GetSectorHeigth, &C::SetSectorHeigth>("linear_tolerance"),
      row<&C::GetSectorAngle, &C::SetSectorAngle>("angular_tolerance"),
      row<&C::GetSamplesOffset, &C::SetSamplesOffset>("samples_offset"),
      row<&C::GetStepSizeOfSampling, &C::SetStepSizeOfSampling>("sampling_step"),
      row<&C::GetEnableDataRecording, &C::SetEnableDataRecording>("data_recording"),
      row<&C::GetNumberOfSamplesToCalcAvg, &C::SetNumberOfSamplesToCalcAvg>("samples"),
      row<&C::GetVerifyAp, &C::SetVerifyAp>("verify.ap.enabled"),
      row<&C::GetVerifyPenetrationAngle, &C::SetVerifyPenetrationAngle>(
          "verify.penetration_angle.enabled"),
      row<&C::GetMaxPenetrationAngle, &C::SetMaxPenetrationAngle>(
          "verify.penetration_angle.maximum"),
  });
  static constexpr auto kAverages = std::to_array<QuantityRow<C, tdbVerifyAvQuantity>>(
      {{"verify.volume_rate", &C::GetVerifyVolumeRate},
       {"verify.chip_thickness", &C::GetVerifyChipThickness},
       {"verify.power", &C::GetVerifyPower},
       {"verify.torque", &C::GetVerifyTorque}});
  static constexpr auto kTargets = std::to_array<QuantityRow<C, tdbOptimQuantity>>(
      {{"optimize.volume_rate", &C::GetOptimVolumeRate},
       {"optimize.chip_thickness", &C::GetOptimChipThickness},
       {"optimize.power", &C::GetOptimPower},
       {"optimize.torque", &C::GetOptimTorque}});
};

template <>
struct Tables<tdbTurningCutCond> : SharedTables<tdbTurningCutCond> {
  using C = tdbTurningCutCond;

  static constexpr auto kValues = std::to_array<ValueRow<C>>({
      row<&C::GetApproachAngle, &C::SetApproachAngle>("approach_angle"),
      row<&C::GetCornerRadius, &C::SetCornerRadius>("corner_radius"),
      row<&C::GetAp, &C::SetAp>("ap"),
      row<&C::GetStepSizeOfSampling, &C::SetStepSizeOfSampling>("sampling_step"),
      row<&C::GetEnableDataRecording, &C::SetEnableDataRecording>("data_recording"),
      row<&C::GetNumberOfSamplesToCalcAvg, &C::SetNumberOfSamplesToCalcAvg>("samples"),
      row<&C::GetVerifyAp, &C::SetVerifyAp>("verify.ap.enabled"),
  });
  static constexpr auto kAverages = std::to_array<QuantityRow<C, tdbVerifyAvQuantity>>(
      {{"verify.volume_rate", &C::GetVerifyVolumeRate},
       {"verify.chip_thickness", &C::GetVerifyChipThickness},
       {"verify.chip_section", &C::GetVerifyChipSection},
       {"verify.chip_width", &C::GetVerifyChipWidth},
       {"verify.power", &C::GetVerifyPower},
       {"verify.roughness_depth", &C::GetVerifyRoughnessDepth}});
  static constexpr auto kTargets = std::to_array<QuantityRow<C, tdbOptimQuantity>>(
      {{"optimize.volume_rate", &C::GetOptimVolumeRate},
       {"optimize.chip_thickness", &C::GetOptimChipThickness},
       {"optimize.chip_section", &C::GetOptimChipSection},
       {"optimize.chip_width", &C::GetOptimChipWidth},
       {"optimize.power", &C::GetOptimPower},
       {"optimize.roughness_depth", &C::GetOptimRoughnessDepth}});
};

class Slots {
 public:
  template <class C>
  void Add(C& conditions) {
    using T = Tables<C>;
    for (const auto& r : T::kValues) AddValue(r, conditions);
    for (const auto& r : T::kFeeds) AddValue(r, conditions);
    for (const auto& r : T::kRanges) {
      auto& quantity = (conditions.*r.get)();
      AddField(r.name, ".enabled", quantity.enabled);
      AddField(r.name, ".minimum", quantity.minimum);
      AddField(r.name, ".maximum", quantity.maximum);
    }
    for (const auto& r : T::kAverages) {
      auto& quantity = (conditions.*r.get)();
      AddField(r.name, ".enabled", quantity.enabled);
      AddField(r.name, ".average", quantity.average);
      AddField(r.name, ".maximum", quantity.maximum);
    }
    for (const auto& r : T::kTargets) {
      auto& quantity = (conditions.*r.get)();
      AddField(r.name, ".optimized", quantity.optimized);
      AddField(r.name, ".optimal", quantity.optimal);
      AddField(r.name, ".limited", quantity.limited);
      AddField(r.name, ".maximum", quantity.maximum);
    }
  }

  std::vector<ConditionSlot> Take() { return std::move(list_); }

 private:
  template <class C>
  void AddValue(const ValueRow<C>& row, C& conditions) {
    list_.push_back({std::string(row.name), row.kind,
                     [&row, &conditions] { return row.get(conditions); },
                     [&row, &conditions](double value) { row.set(conditions, value); }});
  }

  template <class T>
  void AddField(std::string_view quantity, std::string_view part, T& field) {
    list_.push_back({std::string(quantity) + std::string(part), kKindOf<T>,
                     [&field] { return static_cast<double>(field); },
                     [&field](double value) { field = static_cast<T>(value); }});
  }

  std::vector<ConditionSlot> list_;
};

}  // namespace

std::vector<ConditionSlot> condition_slots(tdbTool& tool) {
  Slots slots;
  if (tool.IsTurningTool()) {
    slots.Add(tool.GetTurningCutCond());
  } else {
    slots.Add(tool.GetCutCond());
  }
  return slots.Take();
}

}  // namespace tooldb

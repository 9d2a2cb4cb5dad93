#include "tooldb/xml/conditions_reader.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "geom/number_text.h"
#include "tooldb/model/text.h"
#include "tooldb/xml/grammar.h"

namespace tooldb {
namespace {

bool flag(const Element& element, std::string_view name) {
  return is_true(attribute(element, name));
}

double text_number(const Element& element) { return leading_number(text_of(element)); }
int text_integer(const Element& element) { return leading_integer(text_of(element)); }

// A text that is empty or "0" stands for the default.
double number_unless_zero(const Element& element, double default_value) {
  const std::string text = text_of(element);
  return text.empty() || text == "0" ? default_value : leading_number(text);
}

double number_in_range(const Element& element, double low, double high, double default_value) {
  const double value = text_number(element);
  return value >= low && value <= high ? value : default_value;
}

void read(const Element& element, tdbVerifyMinMaxQuantity& quantity) {
  quantity.Ini(flag(element, att::kEnable), number(element, att::kMin, quantity.minimum),
               number(element, att::kMax, quantity.maximum));
}

void read(const Element& element, tdbVerifyAvQuantity& quantity) {
  quantity.Ini(flag(element, att::kEnable), number(element, att::kAverage, quantity.average),
               number(element, att::kMax, quantity.maximum));
}

void read(const Element& element, tdbOptimQuantity& quantity) {
  quantity.Ini(flag(element, att::kEnableOptimization),
               number(element, att::kOptimal, quantity.optimal), flag(element, att::kLimit),
               number(element, att::kMax, quantity.maximum));
}

// Older files give one level of accuracy, 1 to 9, for both tolerances.
void read_accuracy_level(const Element& element, tdbCutCond& conditions) {
  constexpr std::array kLinear{3.0, 3.0, 1.33, 0.9, 0.5, 0.3, 0.17, 0.1, 0.04, 0.03};
  constexpr std::array kAngular{45.0, 45.0, 30.0, 22.0, 16.0, 12.0, 9.0, 7.0, 6.0, 5.0};
  const int level = text_integer(element);
  const auto row = static_cast<std::size_t>(level < 1 || level > 9 ? 5 : level);
  conditions.SetSectorHeigth(kLinear[row]);
  conditions.SetSectorAngle(kAngular[row]);
}

template <class Conditions>
struct Row {
  std::string_view name;
  void (*read)(const Element&, Conditions&);
};

// The three sections; what both kinds of conditions have comes first, then what only one has.
template <class Conditions>
constexpr auto kSharedData = std::to_array<Row<Conditions>>({
    {data::kApproachAngle, [](auto& e, auto& c) { c.SetApproachAngle(text_number(e)); }},
    {data::kAp, [](auto& e, auto& c) { c.SetAp(text_number(e)); }},
    {data::kSamplingStep,
     [](auto& e, auto& c) { c.SetStepSizeOfSampling(number_unless_zero(e, 5)); }},
    {data::kRecording,
     [](auto& e, auto& c) { c.SetEnableDataRecording(is_true(trimmed(text_of(e)))); }},
});

template <class Conditions>
constexpr auto kSharedVerification = std::to_array<Row<Conditions>>({
    {verify::kAp, [](auto& e, auto& c) { c.SetVerifyAp(flag(e, att::kEnable)); }},
    {verify::kChipThickness, [](auto& e, auto& c) { read(e, c.GetVerifyChipThickness()); }},
    {verify::kFeed, [](auto& e, auto& c) { read(e, c.GetVerifyFeed()); }},
    {verify::kSpindle, [](auto& e, auto& c) { read(e, c.GetVerifySpindle()); }},
    {verify::kPower, [](auto& e, auto& c) { read(e, c.GetVerifyPower()); }},
    {verify::kVolumeRate, [](auto& e, auto& c) { read(e, c.GetVerifyVolumeRate()); }},
});

template <class Conditions>
constexpr auto kSharedOptimization = std::to_array<Row<Conditions>>({
    {optimize::kCriterion, [](auto& e, auto& c) { c.SetOptimizationCriteria(text_integer(e)); }},
    {optimize::kChipThickness, [](auto& e, auto& c) { read(e, c.GetOptimChipThickness()); }},
    {optimize::kAirCutFeed,
     [](auto& e, auto& c) { c.SetAirCutFeed(number(e, att::kMax, c.GetAirCutFeed())); }},
    {optimize::kInCutFeed,
     [](auto& e, auto& c) { c.SetInCutFeedLimit(number(e, att::kMax, c.GetInCutFeedLimit())); }},
    {optimize::kMaxProgrammedFeed,
     [](auto& e, auto& c) {
       c.SetMaxProgrammedFeed(number(e, att::kMax, c.GetMaxProgrammedFeed()));
     }},
    {optimize::kMinProgrammedFeed,
     [](auto& e, auto& c) {
       c.SetMinProgrammedFeed(number(e, att::kMax, c.GetMinProgrammedFeed()));
     }},
    {optimize::kPower, [](auto& e, auto& c) { read(e, c.GetOptimPower()); }},
    {optimize::kVolumeRate, [](auto& e, auto& c) { read(e, c.GetOptimVolumeRate()); }},
});

constexpr auto kMillingData = std::to_array<Row<tdbCutCond>>({
    {data::kNumberOfInserts, [](auto& e, auto& c) { c.SetNumberOfInsert(text_integer(e)); }},
    {data::kRakeAngle, [](auto& e, auto& c) { c.SetRakeAngle(text_number(e)); }},
    {data::kDc, [](auto& e, auto& c) { c.SetDc(text_number(e)); }},
    {data::kDi, [](auto& e, auto& c) { c.SetDi(text_number(e)); }},
    {data::kLinearTolerance,
     [](auto& e, auto& c) { c.SetSectorHeigth(number_in_range(e, 0.01, 10, 1)); }},
    {data::kAngularTolerance,
     [](auto& e, auto& c) { c.SetSectorAngle(number_in_range(e, 3, 45, 20)); }},
    {data::kAccuracyLevel, read_accuracy_level},
    {data::kSamplesOffset,
     [](auto& e, auto& c) { c.SetSamplesOffset(number_unless_zero(e, 0.0025)); }},
});

constexpr auto kMillingVerification = std::to_array<Row<tdbCutCond>>({
    {verify::kTorque, [](auto& e, auto& c) { read(e, c.GetVerifyTorque()); }},
    {verify::kPenetrationAngle,
     [](auto& e, auto& c) {
       c.SetVerifyPenetrationAngle(flag(e, att::kEnable));
       c.SetMaxPenetrationAngle(number(e, att::kMax, c.GetMaxPenetrationAngle()));
     }},
});

constexpr auto kMillingOptimization = std::to_array<Row<tdbCutCond>>({
    {optimize::kTorque, [](auto& e, auto& c) { read(e, c.GetOptimTorque()); }},
});

constexpr auto kTurningData = std::to_array<Row<tdbTurningCutCond>>({
    {data::kCornerRadius, [](auto& e, auto& c) { c.SetCornerRadius(text_number(e)); }},
});

constexpr auto kTurningVerification = std::to_array<Row<tdbTurningCutCond>>({
    {verify::kChipWidth, [](auto& e, auto& c) { read(e, c.GetVerifyChipWidth()); }},
    {verify::kChipSection, [](auto& e, auto& c) { read(e, c.GetVerifyChipSection()); }},
    {verify::kRoughnessDepth, [](auto& e, auto& c) { read(e, c.GetVerifyRoughnessDepth()); }},
});

constexpr auto kTurningOptimization = std::to_array<Row<tdbTurningCutCond>>({
    {optimize::kChipWidth, [](auto& e, auto& c) { read(e, c.GetOptimChipWidth()); }},
    {optimize::kChipSection, [](auto& e, auto& c) { read(e, c.GetOptimChipSection()); }},
    {optimize::kRoughnessDepth, [](auto& e, auto& c) { read(e, c.GetOptimRoughnessDepth()); }},
});

template <class Conditions>
void read_section(const Element& section, Conditions& conditions,
                  std::span<const Row<Conditions>> shared, std::span<const Row<Conditions>> own) {
  for (const Element* e = section.FirstChildElement(); e != nullptr; e = e->NextSiblingElement()) {
    for (const auto rows : {shared, own}) {
      const auto row = std::ranges::find(rows, std::string_view(e->Name()), &Row<Conditions>::name);
      if (row != rows.end()) row->read(*e, conditions);
    }
  }
}

template <class Conditions>
struct OwnRows {
  std::span<const Row<Conditions>> data;
  std::span<const Row<Conditions>> verification;
  std::span<const Row<Conditions>> optimization;
};

template <class Conditions>
void read_block(const Element& block, Conditions& conditions, const OwnRows<Conditions>& own) {
  if (has_attribute(block, att::kVersion)) conditions.SetVersion(integer(block, att::kVersion));
  for (const Element* e = block.FirstChildElement(); e != nullptr; e = e->NextSiblingElement()) {
    const std::string_view name = e->Name();
    if (name == tag::kConditionParameters) {
      read_section<Conditions>(*e, conditions, kSharedData<Conditions>, own.data);
    } else if (name == tag::kVerification) {
      if (!attribute(*e, att::kSampleCount).empty()) {
        conditions.SetNumberOfSamplesToCalcAvg(integer(*e, att::kSampleCount));
      }
      read_section<Conditions>(*e, conditions, kSharedVerification<Conditions>, own.verification);
    } else if (name == tag::kOptimization) {
      read_section<Conditions>(*e, conditions, kSharedOptimization<Conditions>, own.optimization);
    }
  }
}

}  // namespace

void read_conditions(const Element& element, tdbCutCond& conditions) {
  read_block<tdbCutCond>(element, conditions,
                         {kMillingData, kMillingVerification, kMillingOptimization});
}

void read_conditions(const Element& element, tdbTurningCutCond& conditions) {
  read_block<tdbTurningCutCond>(element, conditions,
                                {kTurningData, kTurningVerification, kTurningOptimization});
}

}  // namespace tooldb

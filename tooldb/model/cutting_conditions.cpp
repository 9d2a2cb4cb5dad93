#include "tooldb/cutting_conditions.h"

#include <algorithm>
#include <initializer_list>
#include <tuple>

namespace {

int criteria_of(bool first, bool second) { return (first ? 1 : 0) + (second ? 2 : 0); }

void set_criteria(int criteria, bool& first, bool& second) {
  if (criteria < 0 || criteria > 3) return;
  first = (criteria & 1) != 0;
  second = (criteria & 2) != 0;
}

bool any_enabled(std::initializer_list<const tdbVerifyAvQuantity*> quantities) {
  return std::ranges::any_of(quantities, [](const auto* q) { return q->enabled; });
}

bool any_used(std::initializer_list<const tdbOptimQuantity*> quantities) {
  return std::ranges::any_of(quantities, [](const auto* q) { return q->optimized || q->limited; });
}

}  // namespace

void tdbVerifyMinMaxQuantity::Ini(bool is_enabled, double min, double max) {
  enabled = is_enabled;
  minimum = min;
  maximum = max;
}

bool tdbVerifyMinMaxQuantity::operator==(const tdbVerifyMinMaxQuantity& other) const {
  return enabled == other.enabled && minimum == other.minimum && maximum == other.maximum;
}

void tdbVerifyAvQuantity::Ini(bool is_enabled, double avg, double max) {
  enabled = is_enabled;
  average = avg;
  maximum = max;
}

bool tdbVerifyAvQuantity::operator==(const tdbVerifyAvQuantity& other) const {
  return enabled == other.enabled && average == other.average && maximum == other.maximum;
}

void tdbOptimQuantity::Ini(bool is_optimized, double optimal_value, bool is_limited, double max) {
  optimized = is_optimized;
  optimal = optimal_value;
  limited = is_limited;
  maximum = max;
}

bool tdbOptimQuantity::operator==(const tdbOptimQuantity& other) const {
  return optimized == other.optimized && optimal == other.optimal && limited == other.limited &&
         maximum == other.maximum;
}

tdbCutCond::tdbCutCond() {
  verify_feed_.Ini(false, 0, 30000);
  verify_spindle_.Ini(false, 0, 20000);
  verify_volume_rate_.Ini(false, 50, 70);
  verify_chip_thickness_.Ini(false, 0.2, 0.2);
  verify_power_.Ini(false, 20, 20);
  verify_torque_.Ini(false, 20, 20);
  optim_volume_rate_.Ini(false, 50, false, 70);
  optim_chip_thickness_.Ini(false, 0.1, false, 0.2);
  optim_power_.Ini(false, 5, false, 20);
  optim_torque_.Ini(false, 5, false, 20);
}

tdbCutCond::tdbCutCond(const tdbCutCond& other) = default;
tdbCutCond& tdbCutCond::operator=(const tdbCutCond& other) = default;
tdbCutCond::~tdbCutCond() = default;

tdbCutCond* tdbCutCond::Clone() const { return new tdbCutCond(*this); }

int tdbCutCond::GetOptimizationCriteria() const {
  return criteria_of(first_criterion_, second_criterion_);
}

void tdbCutCond::SetOptimizationCriteria(int criteria) {
  set_criteria(criteria, first_criterion_, second_criterion_);
}

void tdbCutCond::ClearOptimizationCriteria() { SetOptimizationCriteria(0); }

bool tdbCutCond::RequiresCutConditionVerify() const {
  return verify_feed_.enabled || verify_spindle_.enabled || verify_ap_ ||
         any_enabled(
             {&verify_volume_rate_, &verify_chip_thickness_, &verify_power_, &verify_torque_});
}

bool tdbCutCond::RequiresCutConditionOpti() const {
  return second_criterion_ &&
         any_used({&optim_volume_rate_, &optim_chip_thickness_, &optim_power_, &optim_torque_});
}

bool tdbCutCond::RequiresAnyCutCondition() const {
  return RequiresCutConditionVerify() || RequiresCutConditionOpti();
}

bool tdbCutCond::operator==(const tdbCutCond& other) const {
  const auto fields = [](const tdbCutCond& c) {
    return std::tie(c.verify_feed_, c.verify_spindle_, c.verify_volume_rate_,
                    c.verify_chip_thickness_, c.verify_power_, c.verify_torque_,
                    c.optim_volume_rate_, c.optim_chip_thickness_, c.optim_power_, c.optim_torque_,
                    c.max_penetration_angle_, c.air_cut_feed_, c.in_cut_feed_limit_,
                    c.max_programmed_feed_, c.min_programmed_feed_, c.samples_offset_,
                    c.step_size_of_sampling_, c.rake_angle_, c.approach_angle_, c.dc_, c.di_, c.ap_,
                    c.sector_height_, c.sector_angle_, c.version_, c.number_of_samples_,
                    c.number_of_insert_, c.verify_ap_, c.verify_penetration_angle_,
                    c.first_criterion_, c.second_criterion_, c.data_recording_);
  };
  return fields(*this) == fields(other);
}

tdbTurningCutCond::tdbTurningCutCond() {
  verify_feed_.Ini(false, 0, 30000);
  verify_spindle_.Ini(false, 0, 20000);
  verify_volume_rate_.Ini(false, 50, 70);
  verify_chip_thickness_.Ini(false, 0.2, 0.2);
  verify_chip_section_.Ini(false, 0.04, 0.04);
  verify_chip_width_.Ini(false, 0.2, 0.2);
  verify_power_.Ini(false, 20, 20);
  verify_roughness_depth_.Ini(false, 100, 100);
  optim_volume_rate_.Ini(false, 50, false, 70);
  optim_chip_thickness_.Ini(false, 0.1, false, 0.2);
  optim_chip_section_.Ini(false, 0.01, false, 0.04);
  optim_chip_width_.Ini(false, 0.1, false, 0.2);
  optim_power_.Ini(false, 5, false, 20);
  optim_roughness_depth_.Ini(false, 50, false, 100);
}

tdbTurningCutCond::tdbTurningCutCond(const tdbTurningCutCond& other) = default;
tdbTurningCutCond& tdbTurningCutCond::operator=(const tdbTurningCutCond& other) = default;
tdbTurningCutCond::~tdbTurningCutCond() = default;

tdbTurningCutCond* tdbTurningCutCond::Clone() const { return new tdbTurningCutCond(*this); }

int tdbTurningCutCond::GetOptimizationCriteria() const {
  return criteria_of(first_criterion_, second_criterion_);
}

void tdbTurningCutCond::SetOptimizationCriteria(int criteria) {
  set_criteria(criteria, first_criterion_, second_criterion_);
}

void tdbTurningCutCond::ClearOptimizationCriteria() { SetOptimizationCriteria(0); }

bool tdbTurningCutCond::RequiresCutConditionVerify() const {
  return verify_feed_.enabled || verify_spindle_.enabled || verify_ap_ ||
         any_enabled({&verify_volume_rate_, &verify_chip_thickness_, &verify_chip_section_,
                      &verify_chip_width_, &verify_power_, &verify_roughness_depth_});
}

bool tdbTurningCutCond::RequiresCutConditionOpti() const {
  return second_criterion_ &&
         any_used({&optim_volume_rate_, &optim_chip_thickness_, &optim_chip_section_,
                   &optim_chip_width_, &optim_power_, &optim_roughness_depth_});
}

bool tdbTurningCutCond::RequiresAnyCutCondition() const {
  return RequiresCutConditionVerify() || RequiresCutConditionOpti();
}

bool tdbTurningCutCond::operator==(const tdbTurningCutCond& other) const {
  const auto fields = [](const tdbTurningCutCond& c) {
    return std::tie(c.verify_feed_, c.verify_spindle_, c.verify_volume_rate_,
                    c.verify_chip_thickness_, c.verify_chip_section_, c.verify_chip_width_,
                    c.verify_power_, c.verify_roughness_depth_, c.optim_volume_rate_,
                    c.optim_chip_thickness_, c.optim_chip_section_, c.optim_chip_width_,
                    c.optim_power_, c.optim_roughness_depth_, c.air_cut_feed_, c.in_cut_feed_limit_,
                    c.max_programmed_feed_, c.min_programmed_feed_, c.step_size_of_sampling_,
                    c.approach_angle_, c.corner_radius_, c.ap_, c.version_, c.number_of_samples_,
                    c.verify_ap_, c.first_criterion_, c.second_criterion_, c.data_recording_);
  };
  return fields(*this) == fields(other);
}

#include <string>
#include <string_view>

#include "tooldb/cutting_conditions.h"
#include "tooldb/xml/grammar.h"
#include "tooldb/xml/xml_append.h"

using namespace tooldb;  // NOLINT(google-build-using-namespace): members of global classes follow

namespace {

template <class... Attributes>
void append_quantity(std::string& out, std::string_view name, const Attributes&... attributes) {
  append(out, '<', name, attributes..., "></", name, ">\n");
}

void append_verify(std::string& out, std::string_view name, const tdbVerifyAvQuantity& quantity) {
  append_quantity(out, name, Attribute{att::kEnable, word::flag(quantity.enabled)},
                  Attribute{att::kMax, Fixed{quantity.maximum}},
                  Attribute{att::kAverage, Fixed{quantity.average}});
}

void append_verify(std::string& out, std::string_view name,
                   const tdbVerifyMinMaxQuantity& quantity) {
  append_quantity(out, name, Attribute{att::kEnable, word::flag(quantity.enabled)},
                  Attribute{att::kMin, Fixed{quantity.minimum}},
                  Attribute{att::kMax, Fixed{quantity.maximum}});
}

// The two blanks at the end belong to the format.
void append_optimize(std::string& out, std::string_view name, const tdbOptimQuantity& quantity) {
  append_quantity(out, name, Attribute{att::kEnableOptimization, word::flag(quantity.optimized)},
                  Attribute{att::kOptimal, Fixed{quantity.optimal}},
                  Attribute{att::kLimit, word::flag(quantity.limited)},
                  Attribute{att::kMax, Fixed{quantity.maximum}}, "  ");
}

void append_feed_limit(std::string& out, std::string_view name, double limit) {
  append_quantity(out, name, Attribute{att::kLimit, word::kTrue},
                  Attribute{att::kMax, Fixed{limit}});
}

template <class Conditions>
void append_start(std::string& out, const Conditions& conditions) {
  append(out, '<', tag::kConditions, Attribute{att::kVersion, conditions.GetVersion()}, ">\n<",
         tag::kConditionParameters, ">\n");
}

template <class Conditions>
void append_verification_start(std::string& out, const Conditions& conditions) {
  append(out, "</", tag::kConditionParameters, ">\n<", tag::kVerification,
         Attribute{att::kSampleCount, conditions.GetNumberOfSamplesToCalcAvg()}, ">\n");
  append_quantity(out, verify::kAp, Attribute{att::kEnable, word::flag(conditions.GetVerifyAp())});
  append_verify(out, verify::kChipThickness, conditions.GetVerifyChipThickness());
}

template <class Conditions>
void append_optimization_start(std::string& out, const Conditions& conditions) {
  append(out, "</", tag::kVerification, ">\n<", tag::kOptimization, ">\n");
  append_line(out, optimize::kCriterion, conditions.GetOptimizationCriteria());
  append_optimize(out, optimize::kChipThickness, conditions.GetOptimChipThickness());
}

template <class Conditions>
void append_feeds(std::string& out, const Conditions& conditions) {
  append_quantity(out, optimize::kAirCutFeed,
                  Attribute{att::kMax, Fixed{conditions.GetAirCutFeed()}});
  append_feed_limit(out, optimize::kInCutFeed, conditions.GetInCutFeedLimit());
  append_feed_limit(out, optimize::kMaxProgrammedFeed, conditions.GetMaxProgrammedFeed());
  append_feed_limit(out, optimize::kMinProgrammedFeed, conditions.GetMinProgrammedFeed());
  append_quantity(out, optimize::kSafeDistance, Attribute{att::kMax, Fixed{0}});
}

void append_end(std::string& out) {
  append(out, "</", tag::kOptimization, ">\n</", tag::kConditions, ">\n");
}

}  // namespace

void tdbCutCond::WriteXml(std::string& out) const {
  append_start(out, *this);
  append_line(out, data::kNumberOfInserts, number_of_insert_);
  append_line(out, data::kRakeAngle, General{rake_angle_});
  append_line(out, data::kApproachAngle, General{approach_angle_});
  append_line(out, data::kDc, General{dc_});
  append_line(out, data::kDi, General{di_});
  append_line(out, data::kAp, General{ap_});
  append_line(out, data::kLinearTolerance, General{sector_height_});
  append_line(out, data::kAngularTolerance, General{sector_angle_});
  append_line(out, data::kSamplesOffset, General{samples_offset_});
  append_line(out, data::kSamplingStep, General{step_size_of_sampling_});
  append_line(out, data::kRecording, word::flag(data_recording_));

  append_verification_start(out, *this);
  append_verify(out, verify::kFeed, verify_feed_);
  append_verify(out, verify::kSpindle, verify_spindle_);
  append_verify(out, verify::kPower, verify_power_);
  append_verify(out, verify::kTorque, verify_torque_);
  append_verify(out, verify::kVolumeRate, verify_volume_rate_);
  append_quantity(out, verify::kPenetrationAngle,
                  Attribute{att::kEnable, word::flag(verify_penetration_angle_)},
                  Attribute{att::kMax, Fixed{max_penetration_angle_}});

  append_optimization_start(out, *this);
  append_feeds(out, *this);
  append_optimize(out, optimize::kPower, optim_power_);
  append_optimize(out, optimize::kTorque, optim_torque_);
  append_optimize(out, optimize::kVolumeRate, optim_volume_rate_);
  append_end(out);
}

void tdbTurningCutCond::WriteXml(std::string& out) const {
  append_start(out, *this);
  append_line(out, data::kApproachAngle, General{approach_angle_});
  append_line(out, data::kCornerRadius, General{corner_radius_});
  append_line(out, data::kAp, General{ap_});
  append_line(out, data::kSamplingStep, General{step_size_of_sampling_});
  append_line(out, data::kRecording, word::flag(data_recording_));

  append_verification_start(out, *this);
  append_verify(out, verify::kChipWidth, verify_chip_width_);
  append_verify(out, verify::kChipSection, verify_chip_section_);
  append_verify(out, verify::kFeed, verify_feed_);
  append_verify(out, verify::kSpindle, verify_spindle_);
  append_verify(out, verify::kPower, verify_power_);
  append_verify(out, verify::kRoughnessDepth, verify_roughness_depth_);
  append_verify(out, verify::kVolumeRate, verify_volume_rate_);

  append_optimization_start(out, *this);
  append_optimize(out, optimize::kChipWidth, optim_chip_width_);
  append_optimize(out, optimize::kChipSection, optim_chip_section_);
  append_feeds(out, *this);
  append_optimize(out, optimize::kPower, optim_power_);
  // The format carries one flag for both of roughness depth.
  tdbOptimQuantity roughness = optim_roughness_depth_;
  roughness.limited = roughness.optimized;
  append_optimize(out, optimize::kRoughnessDepth, roughness);
  append_optimize(out, optimize::kVolumeRate, optim_volume_rate_);
  append_end(out);
}

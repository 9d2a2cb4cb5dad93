#pragma once

#include <string>

#include "tooldb/export.h"

/// A quantity that is verified against a lower and an upper limit.
struct TDB_EXPORT tdbVerifyMinMaxQuantity {
  void Ini(bool is_enabled, double min, double max);
  bool operator==(const tdbVerifyMinMaxQuantity& other) const;
  bool operator!=(const tdbVerifyMinMaxQuantity& other) const { return !(*this == other); }

  bool enabled = false;
  double minimum = 0;
  double maximum = 0;
};

/// A quantity that is verified against limits of its average and of its peak.
struct TDB_EXPORT tdbVerifyAvQuantity {
  void Ini(bool is_enabled, double avg, double max);
  bool operator==(const tdbVerifyAvQuantity& other) const;
  bool operator!=(const tdbVerifyAvQuantity& other) const { return !(*this == other); }

  bool enabled = false;
  double average = 0;
  double maximum = 0;
};

/// A quantity that feeds and speeds are optimised for.
struct TDB_EXPORT tdbOptimQuantity {
  void Ini(bool is_optimized, double optimal_value, bool is_limited, double max);
  bool operator==(const tdbOptimQuantity& other) const;
  bool operator!=(const tdbOptimQuantity& other) const { return !(*this == other); }

  bool optimized = false;
  double optimal = 0;
  bool limited = false;
  double maximum = 0;
};

/// Milling cutting conditions of a tool: cutting data, what a verification checks, and what an
/// optimisation aims at. Lengths in mm, angles in degrees.
class TDB_EXPORT tdbCutCond {
 public:
  tdbCutCond();
  tdbCutCond(const tdbCutCond& other);
  tdbCutCond& operator=(const tdbCutCond& other);
  virtual ~tdbCutCond();
  /// A copy; the caller owns it.
  virtual tdbCutCond* Clone() const;
  /// Appends the conditions as one CUTCOND element.
  virtual void WriteXml(std::string& out) const;

  /// @name Cutting data
  /// @{
  int GetVersion() const { return version_; }
  void SetVersion(int version) { version_ = version; }
  int GetNumberOfInsert() const { return number_of_insert_; }
  void SetNumberOfInsert(int count) { number_of_insert_ = count; }
  double GetRakeAngle() const { return rake_angle_; }
  void SetRakeAngle(double degrees) { rake_angle_ = degrees; }
  double GetApproachAngle() const { return approach_angle_; }
  void SetApproachAngle(double degrees) { approach_angle_ = degrees; }
  /// Cutting diameter.
  double GetDc() const { return dc_; }
  void SetDc(double diameter) { dc_ = diameter; }
  /// Inner diameter.
  double GetDi() const { return di_; }
  void SetDi(double diameter) { di_ = diameter; }
  /// Depth of cut.
  double GetAp() const { return ap_; }
  void SetAp(double depth) { ap_ = depth; }
  /// Linear tolerance of the tool model that forces are computed on.
  double GetSectorHeigth() const { return sector_height_; }
  void SetSectorHeigth(double height) { sector_height_ = height; }
  /// Angular tolerance of that model, degrees.
  double GetSectorAngle() const { return sector_angle_; }
  void SetSectorAngle(double degrees) { sector_angle_ = degrees; }
  double GetSamplesOffset() const { return samples_offset_; }
  void SetSamplesOffset(double offset) { samples_offset_ = offset; }
  double GetStepSizeOfSampling() const { return step_size_of_sampling_; }
  void SetStepSizeOfSampling(double step) { step_size_of_sampling_ = step; }
  bool GetEnableDataRecording() const { return data_recording_; }
  void SetEnableDataRecording(bool enable) { data_recording_ = enable; }
  /// @}

  /// @name Verification
  /// @{
  int GetNumberOfSamplesToCalcAvg() const { return number_of_samples_; }
  void SetNumberOfSamplesToCalcAvg(int count) { number_of_samples_ = count; }
  const tdbVerifyMinMaxQuantity& GetVerifyFeed() const { return verify_feed_; }
  tdbVerifyMinMaxQuantity& GetVerifyFeed() { return verify_feed_; }
  const tdbVerifyMinMaxQuantity& GetVerifySpindle() const { return verify_spindle_; }
  tdbVerifyMinMaxQuantity& GetVerifySpindle() { return verify_spindle_; }
  bool GetVerifyAp() const { return verify_ap_; }
  void SetVerifyAp(bool enable) { verify_ap_ = enable; }
  const tdbVerifyAvQuantity& GetVerifyVolumeRate() const { return verify_volume_rate_; }
  tdbVerifyAvQuantity& GetVerifyVolumeRate() { return verify_volume_rate_; }
  const tdbVerifyAvQuantity& GetVerifyChipThickness() const { return verify_chip_thickness_; }
  tdbVerifyAvQuantity& GetVerifyChipThickness() { return verify_chip_thickness_; }
  const tdbVerifyAvQuantity& GetVerifyPower() const { return verify_power_; }
  tdbVerifyAvQuantity& GetVerifyPower() { return verify_power_; }
  const tdbVerifyAvQuantity& GetVerifyTorque() const { return verify_torque_; }
  tdbVerifyAvQuantity& GetVerifyTorque() { return verify_torque_; }
  bool GetVerifyPenetrationAngle() const { return verify_penetration_angle_; }
  void SetVerifyPenetrationAngle(bool enable) { verify_penetration_angle_ = enable; }
  /// Degrees.
  double GetMaxPenetrationAngle() const { return max_penetration_angle_; }
  void SetMaxPenetrationAngle(double degrees) { max_penetration_angle_ = degrees; }
  /// @}

  /// @name Optimisation
  /// @{
  /// 0 neither criterion, 1 the first, 2 the second, 3 both.
  int GetOptimizationCriteria() const;
  /// Any other value than 0 to 3 changes nothing.
  void SetOptimizationCriteria(int criteria);
  void ClearOptimizationCriteria();
  double GetAirCutFeed() const { return air_cut_feed_; }
  void SetAirCutFeed(double feed) { air_cut_feed_ = feed; }
  double GetInCutFeedLimit() const { return in_cut_feed_limit_; }
  void SetInCutFeedLimit(double feed) { in_cut_feed_limit_ = feed; }
  /// Largest and smallest feed, as factors of the programmed one.
  double GetMaxProgrammedFeed() const { return max_programmed_feed_; }
  void SetMaxProgrammedFeed(double factor) { max_programmed_feed_ = factor; }
  double GetMinProgrammedFeed() const { return min_programmed_feed_; }
  void SetMinProgrammedFeed(double factor) { min_programmed_feed_ = factor; }
  const tdbOptimQuantity& GetOptimVolumeRate() const { return optim_volume_rate_; }
  tdbOptimQuantity& GetOptimVolumeRate() { return optim_volume_rate_; }
  const tdbOptimQuantity& GetOptimChipThickness() const { return optim_chip_thickness_; }
  tdbOptimQuantity& GetOptimChipThickness() { return optim_chip_thickness_; }
  const tdbOptimQuantity& GetOptimPower() const { return optim_power_; }
  tdbOptimQuantity& GetOptimPower() { return optim_power_; }
  const tdbOptimQuantity& GetOptimTorque() const { return optim_torque_; }
  tdbOptimQuantity& GetOptimTorque() { return optim_torque_; }
  /// @}

  /// True when feed, spindle, depth of cut or one of the averaged quantities is verified; the
  /// penetration angle alone does not count.
  bool RequiresCutConditionVerify() const;
  /// True when the second criterion is set and a quantity is optimised or limited.
  bool RequiresCutConditionOpti() const;
  bool RequiresAnyCutCondition() const;

  bool operator==(const tdbCutCond& other) const;
  bool operator!=(const tdbCutCond& other) const { return !(*this == other); }

 private:
  tdbVerifyMinMaxQuantity verify_feed_;
  tdbVerifyMinMaxQuantity verify_spindle_;
  tdbVerifyAvQuantity verify_volume_rate_;
  tdbVerifyAvQuantity verify_chip_thickness_;
  tdbVerifyAvQuantity verify_power_;
  tdbVerifyAvQuantity verify_torque_;
  tdbOptimQuantity optim_volume_rate_;
  tdbOptimQuantity optim_chip_thickness_;
  tdbOptimQuantity optim_power_;
  tdbOptimQuantity optim_torque_;
  double max_penetration_angle_ = 10;
  double air_cut_feed_ = 40000;
  double in_cut_feed_limit_ = 20000;
  double max_programmed_feed_ = 1.2;
  double min_programmed_feed_ = 0.5;
  double samples_offset_ = 0.0025;
  double step_size_of_sampling_ = 5;
  double rake_angle_ = 0;
  double approach_angle_ = 90;
  double dc_ = 10;
  double di_ = 0;
  double ap_ = 2;
  double sector_height_ = 1;
  double sector_angle_ = 20;
  int version_ = 4;
  int number_of_samples_ = 10;
  int number_of_insert_ = 4;
  bool verify_ap_ = false;
  bool verify_penetration_angle_ = false;
  bool first_criterion_ = false;
  bool second_criterion_ = false;
  bool data_recording_ = false;
};

/// Turning cutting conditions; the accessors mean what they mean for milling.
class TDB_EXPORT tdbTurningCutCond {
 public:
  tdbTurningCutCond();
  tdbTurningCutCond(const tdbTurningCutCond& other);
  tdbTurningCutCond& operator=(const tdbTurningCutCond& other);
  virtual ~tdbTurningCutCond();
  /// A copy; the caller owns it.
  virtual tdbTurningCutCond* Clone() const;
  /// Appends the conditions as one CUTCOND element.
  virtual void WriteXml(std::string& out) const;

  /// @name Cutting data
  /// @{
  int GetVersion() const { return version_; }
  void SetVersion(int version) { version_ = version; }
  double GetApproachAngle() const { return approach_angle_; }
  void SetApproachAngle(double degrees) { approach_angle_ = degrees; }
  double GetCornerRadius() const { return corner_radius_; }
  void SetCornerRadius(double radius) { corner_radius_ = radius; }
  double GetAp() const { return ap_; }
  void SetAp(double depth) { ap_ = depth; }
  double GetStepSizeOfSampling() const { return step_size_of_sampling_; }
  void SetStepSizeOfSampling(double step) { step_size_of_sampling_ = step; }
  bool GetEnableDataRecording() const { return data_recording_; }
  void SetEnableDataRecording(bool enable) { data_recording_ = enable; }
  /// @}

  /// @name Verification
  /// @{
  int GetNumberOfSamplesToCalcAvg() const { return number_of_samples_; }
  void SetNumberOfSamplesToCalcAvg(int count) { number_of_samples_ = count; }
  const tdbVerifyMinMaxQuantity& GetVerifyFeed() const { return verify_feed_; }
  tdbVerifyMinMaxQuantity& GetVerifyFeed() { return verify_feed_; }
  const tdbVerifyMinMaxQuantity& GetVerifySpindle() const { return verify_spindle_; }
  tdbVerifyMinMaxQuantity& GetVerifySpindle() { return verify_spindle_; }
  bool GetVerifyAp() const { return verify_ap_; }
  void SetVerifyAp(bool enable) { verify_ap_ = enable; }
  const tdbVerifyAvQuantity& GetVerifyVolumeRate() const { return verify_volume_rate_; }
  tdbVerifyAvQuantity& GetVerifyVolumeRate() { return verify_volume_rate_; }
  const tdbVerifyAvQuantity& GetVerifyChipThickness() const { return verify_chip_thickness_; }
  tdbVerifyAvQuantity& GetVerifyChipThickness() { return verify_chip_thickness_; }
  const tdbVerifyAvQuantity& GetVerifyChipSection() const { return verify_chip_section_; }
  tdbVerifyAvQuantity& GetVerifyChipSection() { return verify_chip_section_; }
  const tdbVerifyAvQuantity& GetVerifyChipWidth() const { return verify_chip_width_; }
  tdbVerifyAvQuantity& GetVerifyChipWidth() { return verify_chip_width_; }
  const tdbVerifyAvQuantity& GetVerifyPower() const { return verify_power_; }
  tdbVerifyAvQuantity& GetVerifyPower() { return verify_power_; }
  const tdbVerifyAvQuantity& GetVerifyRoughnessDepth() const { return verify_roughness_depth_; }
  tdbVerifyAvQuantity& GetVerifyRoughnessDepth() { return verify_roughness_depth_; }
  /// @}

  /// @name Optimisation
  /// @{
  int GetOptimizationCriteria() const;
  void SetOptimizationCriteria(int criteria);
  void ClearOptimizationCriteria();
  double GetAirCutFeed() const { return air_cut_feed_; }
  void SetAirCutFeed(double feed) { air_cut_feed_ = feed; }
  double GetInCutFeedLimit() const { return in_cut_feed_limit_; }
  void SetInCutFeedLimit(double feed) { in_cut_feed_limit_ = feed; }
  double GetMaxProgrammedFeed() const { return max_programmed_feed_; }
  void SetMaxProgrammedFeed(double factor) { max_programmed_feed_ = factor; }
  double GetMinProgrammedFeed() const { return min_programmed_feed_; }
  void SetMinProgrammedFeed(double factor) { min_programmed_feed_ = factor; }
  const tdbOptimQuantity& GetOptimVolumeRate() const { return optim_volume_rate_; }
  tdbOptimQuantity& GetOptimVolumeRate() { return optim_volume_rate_; }
  const tdbOptimQuantity& GetOptimChipThickness() const { return optim_chip_thickness_; }
  tdbOptimQuantity& GetOptimChipThickness() { return optim_chip_thickness_; }
  const tdbOptimQuantity& GetOptimChipSection() const { return optim_chip_section_; }
  tdbOptimQuantity& GetOptimChipSection() { return optim_chip_section_; }
  const tdbOptimQuantity& GetOptimChipWidth() const { return optim_chip_width_; }
  tdbOptimQuantity& GetOptimChipWidth() { return optim_chip_width_; }
  const tdbOptimQuantity& GetOptimPower() const { return optim_power_; }
  tdbOptimQuantity& GetOptimPower() { return optim_power_; }
  /// The XML writes its limit flag as the enable flag.
  const tdbOptimQuantity& GetOptimRoughnessDepth() const { return optim_roughness_depth_; }
  tdbOptimQuantity& GetOptimRoughnessDepth() { return optim_roughness_depth_; }
  /// @}

  bool RequiresCutConditionVerify() const;
  bool RequiresCutConditionOpti() const;
  bool RequiresAnyCutCondition() const;

  bool operator==(const tdbTurningCutCond& other) const;
  bool operator!=(const tdbTurningCutCond& other) const { return !(*this == other); }

 private:
  tdbVerifyMinMaxQuantity verify_feed_;
  tdbVerifyMinMaxQuantity verify_spindle_;
  tdbVerifyAvQuantity verify_volume_rate_;
  tdbVerifyAvQuantity verify_chip_thickness_;
  tdbVerifyAvQuantity verify_chip_section_;
  tdbVerifyAvQuantity verify_chip_width_;
  tdbVerifyAvQuantity verify_power_;
  tdbVerifyAvQuantity verify_roughness_depth_;
  tdbOptimQuantity optim_volume_rate_;
  tdbOptimQuantity optim_chip_thickness_;
  tdbOptimQuantity optim_chip_section_;
  tdbOptimQuantity optim_chip_width_;
  tdbOptimQuantity optim_power_;
  tdbOptimQuantity optim_roughness_depth_;
  double air_cut_feed_ = 40000;
  double in_cut_feed_limit_ = 20000;
  double max_programmed_feed_ = 1.2;
  double min_programmed_feed_ = 0.5;
  double step_size_of_sampling_ = 5;
  double approach_angle_ = 90;
  double corner_radius_ = 1;
  double ap_ = 2;
  int version_ = 0;
  int number_of_samples_ = 10;
  bool verify_ap_ = false;
  bool first_criterion_ = false;
  bool second_criterion_ = false;
  bool data_recording_ = false;
};

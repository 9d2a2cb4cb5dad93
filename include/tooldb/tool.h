#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tooldb/composite_item.h"
#include "tooldb/cutting_conditions.h"
#include "tooldb/export.h"
#include "tooldb/geometry.h"

class tdbToolCutter;
class tdbToolHolder;
class tdbToolShank;

/// One numbered offset register of a tool; lengths in the tool's unit.
struct OFFSET_VALUE {
  /// Names one field of the record.
  enum class VarIndex { DX = 0, DY = 1, DZ = 2, RAD = 3, POS = 4, ABS = 5 };

  friend bool operator==(const OFFSET_VALUE& a, const OFFSET_VALUE& b) {
    return a.index == b.index && a.DX == b.DX && a.DY == b.DY && a.DZ == b.DZ && a.RAD == b.RAD &&
           a.POS == b.POS && a.ABS == b.ABS;
  }
  friend bool operator!=(const OFFSET_VALUE& a, const OFFSET_VALUE& b) { return !(a == b); }

  int index = 0;  ///< number of the register, the record's key
  double DX = 0;
  double DY = 0;
  double DZ = 0;
  double RAD = 0;    ///< radius offset
  int POS = 0;       ///< position number
  bool ABS = false;  ///< the values are absolute, not incremental
};

/// What older tool files carry as attributes and current ones do not. Kept for the host to look
/// at; never written, and never taken over into the cutting conditions.
struct tdbLegacyToolData {
  std::string code;  ///< CODE, or ID before version 4
  double length = 0;
  bool tcp = false;
  double cutfin_tolerance = 0;
  double shank_workpiece_tolerance = 0;
  double cut_region_z = -1000;
  double cut_region_r = -1000;
  bool enable_cut_region_z = false;
  bool data_recording = false;
  bool check_max_spindle = false;
  bool check_max_feed = false;
  bool check_power_and_torque = false;
  double max_spindle = 1e12;
  double max_feed = 1e12;
  double min_spindle = 0;
  double min_feed = 0;
  double max_volume_removed = 1e12;
  double chip_thickness = 1e12;
  double approach_angle = 90;  ///< degrees
  double rake_angle = 0;       ///< degrees
  int insert_number = 0;
  int model_accuracy = 0;  ///< level 1 to 9; 0 not given
  double samples_offset = 0.0025;
  double step_size_of_sampling = 0;
  std::string trace_color_rgb;
};

/// A tool: the root of an assembly of cutting tools, holders, links and components, and what the
/// machining needs of the tool as a whole. Lengths in the tool's unit (`GetUnitOfMeasurement`).
class TDB_EXPORT tdbTool : public tdbCompositeItem {
 public:
  /// Named "Tool", type 0.
  explicit tdbTool(const std::string& code);
  tdbTool(const std::string& code, const std::string& name);
  tdbTool(const std::string& code, int type);
  tdbTool(const tdbTool& other);
  tdbTool& operator=(const tdbTool& other);
  ~tdbTool() override;

  tdbItem* Clone() const override;
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const override;
  std::string GetFileExt() override;
  bool IsSTL() override;
  bool IsParametric() const override;
  /// Always true, and nothing is appended: ask the items.
  bool GetProfile(kinSceneManager* scene, std::vector<std::vector<Point2d<double>>>& contours,
                  double tolerance, long mode) override;
  bool GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                double tolerance) override;
  bool HasShape() override;
  kinShape* CreateShape(kinSceneManager* scene, double tolerance, bool extend, double extension,
                        bool* empty, int flags) override;
  /// Refreshes the placements, then takes the diameter and, with auto TCP on, the offset from the
  /// first cutter: the offset brings the cutter's origin to the tool's.
  void Update() override;

  /// @name Description
  /// @{
  const char* GetDescr() const { return description_.c_str(); }
  void SetDescr(const char* description);
  const char* GetComment() const { return comment_.c_str(); }
  void SetComment(const char* comment);
  /// 0..19; other values are brought into that range.
  int GetTraceColor() const { return trace_color_; }
  void SetTraceColor(int color);
  bool GetAutoColor() const { return auto_color_; }
  void SetAutoColor(bool automatic) { auto_color_ = automatic; }
  int GetSubType() const { return sub_type_; }
  void SetSubType(int sub_type) { sub_type_ = sub_type; }
  /// True for the types 3 (turning) and 9 (bore), which use the turning conditions.
  bool IsTurningTool() const;
  /// @}

  /// @name Dimensions and offsets
  /// @{
  double GetToolModelTolerance() const { return tolerance_; }
  void SetToolModelTolerance(double tolerance);
  Vec3d<double> GetOffset() const { return offset_; }
  void SetOffset(double x, double y, double z) { offset_ = {x, y, z}; }
  double GetOffsetX() const { return offset_.x; }
  double GetOffsetY() const { return offset_.y; }
  double GetOffsetZ() const { return offset_.z; }
  void SetOffsetX(double x) { offset_.x = x; }
  void SetOffsetY(double y) { offset_.y = y; }
  void SetOffsetZ(double z) { offset_.z = z; }
  /// The length is the Z offset; setting it clears the other two.
  double GetLength() const { return offset_.z; }
  void SetLength(double length) { offset_ = {0, 0, length}; }
  double GetDiameter() const { return diameter_; }
  void SetDiameter(double diameter) { diameter_ = diameter; }
  double GetDeltaZ() const { return delta_z_; }
  void SetDeltaZ(double delta) { delta_z_ = delta; }
  bool GetAutoTcp() const { return auto_tcp_; }
  void SetAutoTcp(bool automatic) { auto_tcp_ = automatic; }
  /// @}

  /// @name Parameters: an ordered list of pairs; a name may come twice
  /// @{
  void AddParam(const char* name, const char* value);
  int GetParamCount() const;
  /// `i` must be in 0..count-1.
  const char* GetParamName(int i) const;
  const char* GetParamValue(int i) const;
  /// Index of the first pair of that name; -1 if none.
  int GetParamIndex(const char* name) const;
  /// Value of the first pair of that name; empty, never null, if none.
  const char* GetParamValue(const char* name) const;
  bool SetParamValue(int i, const char* value);
  /// Index of the pair that was set; -1, and nothing changed, if none has that name.
  int SetParamValue(const char* name, const char* value);
  void RemoveParam(int i);
  void RemoveAllParams();
  const std::vector<std::pair<std::string, std::string>>& GetParamList() const {
    return param_list_;
  }
  /// @}

  /// @name Offset records
  /// @{
  void AddOffsetParam(const OFFSET_VALUE& value);
  /// Overwrites the first record of that index, or appends one.
  void AddOffsetParam(int index, const OFFSET_VALUE& value);
  /// Sets one field of the first record of that index, or appends a record with it. A record that
  /// is appended through ABS keeps ABS false.
  void AddOffsetParam(int index, OFFSET_VALUE::VarIndex field, double value);
  /// The record at position `i`; a zeroed one when out of range.
  OFFSET_VALUE GetOffsetParam(int i) const;
  int GetOffsetParamCount() const;
  void RemoveOffsetParam(int i);
  void RemoveAllOffsetParams();
  const std::vector<OFFSET_VALUE>& GetOffsetParamList() const { return offset_list_; }
  /// @}

  /// @name Cutting conditions, section view, cutter extension
  /// @{
  const tdbCutCond& GetCutCond() const { return cut_cond_; }
  tdbCutCond& GetCutCond() { return cut_cond_; }
  const tdbTurningCutCond& GetTurningCutCond() const { return turning_cut_cond_; }
  tdbTurningCutCond& GetTurningCutCond() { return turning_cut_cond_; }
  bool IsSectionEnabled() const { return section_enabled_; }
  void EnableSection(bool enable) { section_enabled_ = enable; }
  /// Degrees.
  double GetSectionStartAngle() const { return section_start_; }
  void SetSectionStartAngle(double degrees) { section_start_ = degrees; }
  double GetSectionSpanAngle() const { return section_span_; }
  void SetSectionSpanAngle(double degrees) { section_span_ = degrees; }
  bool IsCutterExtensionEnabled() const { return extension_enabled_; }
  void SetCutterExtensionEnabled(bool enable) { extension_enabled_ = enable; }
  double GetCutterExtensionValue() const { return extension_value_; }
  void SetCutterExtensionValue(double value) { extension_value_ = value; }
  double GetCutterExtensionStep() const { return extension_step_; }
  void SetCutterExtensionStep(double step) { extension_step_ = step; }
  double GetCutterExtensionMax() const { return extension_max_; }
  void SetCutterExtensionMax(double max) { extension_max_ = max; }
  /// Attributes of an older file that this tool was read from; the defaults otherwise.
  const tdbLegacyToolData& GetLegacyData() const;
  void SetLegacyData(const tdbLegacyToolData& data);
  /// @}

  /// @name Assembly: the items of a class anywhere in the tree, depth first, parents first
  /// @{
  /// Each takes the item over; the Set forms add too.
  void AddCutter(tdbToolCutter* cutter);
  void SetCutter(tdbToolCutter* cutter);
  void AddShank(tdbToolShank* shank);
  void SetShank(tdbToolShank* shank);
  void AddHolder(tdbToolHolder* holder);
  int GetCutterCount() const;
  int GetShankCount() const;
  int GetHolderCount() const;
  /// The i-th item of the class, borrowed; null when out of range.
  const tdbToolCutter* GetCutter(int i) const;
  tdbToolCutter* GetCutter(int i);
  const tdbToolShank* GetShank(int i) const;
  tdbToolShank* GetShank(int i);
  const tdbToolHolder* GetHolder(int i) const;
  tdbToolHolder* GetHolder(int i);
  /// Absolute position of the i-th cutter; the identity when out of range.
  Transformation<double> GetAbsPosCutter(unsigned i) const;
  /// Deletes every holder, but leaves the dead pointers in the lists of their parents: the tool
  /// must not be walked, copied, written or destroyed before each of them has been taken out by a
  /// caller who kept them. Prefer `RemoveItem` on the parent of each holder.
  void RemoveAllHolders();
  /// Do nothing: cutters and shanks are removed through their composites.
  void RemoveAllCutters();
  void RemoveAllShanks();
  /// @}

  /// Composite equality and all of the above except legacy data.
  bool operator==(const tdbTool& other) const;
  bool operator!=(const tdbTool& other) const { return !(*this == other); }

 private:
  struct LengthOptimisation;

  std::string description_;
  std::string comment_;
  std::vector<std::pair<std::string, std::string>> param_list_;
  std::vector<OFFSET_VALUE> offset_list_;
  Vec3d<double> offset_;
  double tolerance_ = 0.1;
  double diameter_ = 0;
  double delta_z_ = 0;
  double section_start_ = 0;
  double section_span_ = 180;
  double extension_value_ = -0.1;
  double extension_step_ = 0.1;
  double extension_max_ = 1.0;
  tdbCutCond cut_cond_;
  tdbTurningCutCond turning_cut_cond_;
  /// Null while nothing differs from the defaults.
  std::unique_ptr<LengthOptimisation> length_optimisation_;
  std::unique_ptr<tdbLegacyToolData> legacy_;
  int trace_color_ = 19;
  int sub_type_ = 0;
  bool auto_color_ = true;
  bool auto_tcp_ = true;
  bool section_enabled_ = false;
  bool extension_enabled_ = false;
};

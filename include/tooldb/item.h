#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tooldb/export.h"
#include "tooldb/geometry.h"
#include "tooldb/object.h"

class kinSceneManager;
class kinShape;
class tdbCuttingTool;
class tdbItem;

/// A tree walk's or a composite's callback; `item` is borrowed for the call.
using tdbItemCallback = void (*)(void* context, tdbItem* item);

/// Display colour of an item, each channel 0..1, and the image of its reflections.
/// The numbers of a new record are unset.
class TDB_EXPORT tdbToolMaterial {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): owners set all four numbers.
  tdbToolMaterial() {}
  tdbToolMaterial(float r, float g, float b, float transparent, const std::string& environment)
      : red(r), green(g), blue(b), transparency(transparent), environmentMap(environment) {}

  bool operator==(const tdbToolMaterial& other) const;
  bool operator!=(const tdbToolMaterial& other) const { return !(*this == other); }

  float red;
  float green;
  float blue;
  float transparency;  ///< 0 is opaque
  std::string environmentMap;
};

/// How collisions of an item are judged.
class TDB_EXPORT tdbInterferenceSettings {
 public:
  bool inherit = true;  ///< take the settings of the enclosing item instead of these
  int type = 0;         ///< 1: near-miss check; any other value: allowed interference
  double value = 0;     ///< near-miss distance or allowed interference, in the item's unit
};

/// A node of a tool's tree: placement, text parameters, material and source of geometry.
///
/// An item belongs to the composite that it was added to; an item without a parent belongs to
/// whoever made it. Nothing here is locked: one thread at a time works on one tree.
class TDB_EXPORT tdbItem : public tdbObject {
 public:
  ~tdbItem() override;

  tdbItem* Clone() const override = 0;

  /// Extension of the file that stores this item, with its dot; ".xml" for a plain item.
  virtual std::string GetFileExt();
  virtual void SetType(int type);
  /// True for an item that can have no children.
  virtual bool IsLeaf();
  virtual bool IsRoot();
  /// True when the geometry comes from a model file.
  virtual bool IsSTL() = 0;
  /// True when the geometry is built from the parameters.
  virtual bool IsParametric() const = 0;

  /// Calls `callback(context, item)` for this item and then for all below it, parents first.
  virtual void Visit(tdbItemCallback callback, void* context);

  /// Appends the outline of a cutter, shank or holder; false for every other item.
  /// @param scene     loads model files; null: the library's own scene manager
  /// @param contours  lists of (distance from the axis, position along it from the tip plane); all
  ///                  of them, those that stood there before too, come back simplified and
  ///                  clockwise. A failing call leaves them as they were.
  /// @param tolerance chord tolerance of arcs, and the distance below which points are one; the
  ///                  item's unit, > 0
  /// @param mode      for model files: 1 the silhouette, any other value the turning section
  /// @return false when the parameters are refused, the model file cannot be loaded, or `contours`
  ///         ends empty
  virtual bool GetProfile(kinSceneManager* scene,
                          std::vector<std::vector<Point2d<double>>>& contours, double tolerance,
                          long mode);
  /// Appends the item's own triangles in the item's frame (its position is not applied).
  /// @param tolerance  largest distance of the mesh from the true surface, the item's unit
  /// @return false, and nothing appended, for an item without a shape or with a hidden one
  virtual bool GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                        double tolerance) = 0;
  virtual bool HasShape() = 0;
  /// Makes a scene shape of the item's triangles, with the item's material.
  /// @param extend     grow the outline by `extension` (the item's unit) before it is turned
  /// @param empty      set to true when nothing was made; may be null
  /// @param flags      reserved, 0
  /// @return the shape, to be released by the caller, or null
  virtual kinShape* CreateShape(kinSceneManager* scene, double tolerance, bool extend,
                                double extension, bool* empty, int flags) = 0;

  /// Refreshes the absolute position of a modified item from its parent's; a root keeps its own.
  virtual void Update();
  virtual void HideShape(bool hide);
  virtual bool IsHideShape();

  tdbItem* GetParent() const { return parent_; }
  void SetParent(tdbItem* parent) { parent_ = parent; }
  /// This item if it is a root, else its topmost ancestor.
  tdbItem* GetRoot();
  /// Appends the parent, the grandparent and so on up to the root, nearest first.
  void GetParents(std::vector<tdbItem*>& out);

  /// Type code; its meaning is the concrete class's.
  int GetType() const { return type_; }

  /// Value of a parameter, or `default_value` itself (null allowed) when it is not set. The
  /// pointer is borrowed until the parameter is set again or removed.
  const char* GetParam(const char* name, const char* default_value) const;
  /// Sets a parameter and the modified mark; a null value changes nothing.
  void SetParam(const char* name, const char* value);
  std::map<std::string, std::string> GetParams() const { return params_; }
  /// Empties the parameters; the modified mark stays as it is.
  void RemoveParams();

  /// Placement relative to the parent.
  Transformation<double> GetPos() const;
  void SetPos(const Transformation<double>& pos);
  /// Placement in the root's frame, as of the last `Update`.
  Transformation<double> GetAbsPos() const;
  /// Placement of the shape inside the item.
  Transformation<double> GetShapePos() const;
  void SetShapePos(const Transformation<double>& pos);

  const tdbToolMaterial& GetMaterial() const { return material_; }
  tdbToolMaterial& GetMaterial() { return material_; }
  void SetMaterial(const tdbToolMaterial& material) { material_ = material; }

  const tdbInterferenceSettings& GetInterferenceSettings() const { return interference_; }
  void SetInterferenceSettings(const tdbInterferenceSettings& settings) {
    interference_ = settings;
  }
  /// Replaces `out` by the three interference attributes of a start tag.
  void WriteInterfSettingsXml(std::string& out) const;

  /// Unit of the model file: 0 millimetres, 1 inches.
  int GetFileUnits() const { return file_units_; }
  void SetFileUnits(int units) { file_units_ = units; }
  const char* GetShapeFilePath() const { return shape_file_path_.c_str(); }
  void SetShapeFilePath(const char* path);
  /// Options of the model file, kept as they stand.
  const char* GetFileOptions() const { return file_options_.c_str(); }
  void SetFileOptions(const char* options);
  /// The outline as contour XML: LINE and ARC elements, no enclosing element.
  const char* GetProfileXml() const { return profile_xml_.c_str(); }
  void SetProfileXml(const char* xml);

  /// True when the item turns with the spindle.
  bool IsSpinningEnable() const { return spinning_; }
  void SetEnableSpinning(bool enable) { spinning_ = enable; }
  /// True for a member of a library component.
  bool IsComponent() const { return component_; }
  void SetItemComponent(bool component) { component_ = component; }

  /// Unit of the item's lengths: 0 millimetres, else inches.
  int GetUnitOfMeasurement() const { return unit_of_measurement_; }
  void SetUnitOfMeasurement(int unit) { unit_of_measurement_ = unit; }

  /// Object equality, and all that describes the item; not compared: parent, hide switch,
  /// interference settings.
  bool operator==(const tdbItem& other) const;
  bool operator!=(const tdbItem& other) const { return !(*this == other); }

 protected:
  explicit tdbItem(int type);
  tdbItem(int type, const std::string& name);
  tdbItem(int type, const std::string& name, const std::string& code);
  /// Copies all, the parent link too, except the interference settings, which start anew.
  tdbItem(const tdbItem& other);
  /// Copies all except the interference settings, which stay the target's own.
  tdbItem& operator=(const tdbItem& other);

  /// Places the item in the root's frame; for classes that place their children themselves.
  void SetAbsPos(const Transformation<double>& pos);
  /// True when the position equals the identity within 1e-14.
  bool IsPosIdentity() const { return pos_is_identity_; }

 private:
  /// It places its shank.
  friend class tdbCuttingTool;

  /// A placement that costs a pointer while it is the identity, as most are.
  class Placement {
   public:
    Placement() = default;
    Placement(const Placement& other);
    Placement& operator=(const Placement& other);
    Transformation<double> Get() const;
    void Set(const Transformation<double>& value);

   private:
    std::unique_ptr<Transformation<double>> value_;
  };

  tdbItem* parent_ = nullptr;
  Placement pos_;
  Placement abs_pos_;
  Placement shape_pos_;
  Placement auxiliary_;
  tdbToolMaterial material_;
  std::string shape_file_path_;
  std::string file_options_;
  std::string profile_xml_;
  std::map<std::string, std::string> params_;
  tdbInterferenceSettings interference_;
  int type_ = 0;
  int file_units_ = 0;
  int unit_of_measurement_ = 0;
  bool spinning_ = false;
  bool component_ = false;
  bool pos_is_identity_ = true;
  bool hide_shape_ = false;
};

#pragma once

#include <string>
#include <vector>

#include "tooldb/composite_item.h"
#include "tooldb/export.h"
#include "tooldb/item.h"

class tdbToolCutter;
class tdbToolShank;

/// @file
/// The node classes of a tool's tree. Each class overrides what the item hierarchy declares;
/// comments stand only where a class adds to it.

/// A reusable sub-assembly. In the components library, with its component mark set, it is the
/// definition and its members carry the mark too; inside a tool, without the mark, it is a use of
/// the library component of its code, and its members are taken from there.
class TDB_EXPORT tdbToolComponent : public tdbCompositeItem {
 public:
  tdbToolComponent();
  explicit tdbToolComponent(int type);
  tdbToolComponent(int type, const std::string& name);
  tdbToolComponent(int type, const std::string& name, const std::string& code);
  tdbToolComponent(const tdbToolComponent& other) = default;
  tdbToolComponent& operator=(const tdbToolComponent& other) = default;

  tdbItem* Clone() const override;
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const override;
  std::string GetFileExt() override;
  bool IsSTL() override;
  bool IsParametric() const override;
  bool GetProfile(kinSceneManager* scene, std::vector<std::vector<Point2d<double>>>& contours,
                  double tolerance, long mode) override;
  /// Appends the triangles of every member, each placed in the component's frame.
  bool GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                double tolerance) override;
  bool HasShape() override;
  kinShape* CreateShape(kinSceneManager* scene, double tolerance, bool extend, double extension,
                        bool* empty, int flags) override;
};

/// A cutter with its shank. The type code is the kind of cutting tool (`GetTypeName`).
class TDB_EXPORT tdbCuttingTool : public tdbCompositeItem {
 public:
  explicit tdbCuttingTool(int type);
  /// Takes both parts over; a null part is left out.
  tdbCuttingTool(tdbToolCutter* cutter, tdbToolShank* shank, int type);
  tdbCuttingTool(const tdbCuttingTool& other) = default;
  tdbCuttingTool& operator=(const tdbCuttingTool& other) = default;

  tdbItem* Clone() const override;
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const override;
  bool IsSTL() override;
  bool IsParametric() const override;
  bool GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                double tolerance) override;
  bool HasShape() override;
  kinShape* CreateShape(kinSceneManager* scene, double tolerance, bool extend, double extension,
                        bool* empty, int flags) override;
  /// Also joins a parametric shank that was not placed by hand to the top of the cutter.
  void Update() override;
  /// Passes the switch on to the children.
  void HideShape(bool hide) override;

  /// "MILL_FLATEND" and so on; "UNDEF" for a code without a name.
  virtual std::string GetTypeName() const;
  /// Sets the usual parameters of this kind on the cutter, if there is one.
  virtual void InitCutterParams();
  /// Sets the usual parameters of this kind on the shank, if there is one.
  virtual void InitShankParams();
  virtual void InitParams();

  /// The code of a name, spelt exactly so; -1 if there is none.
  static int GetTypeByName(const std::string& name);

  /// The first direct child of the class, borrowed; null if none.
  const tdbToolCutter* GetCutter() const;
  tdbToolCutter* GetCutter();
  const tdbToolShank* GetShank() const;
  tdbToolShank* GetShank();

  /// Moves the cutter, and a shank that is not joined to it, by `dz` along the axis.
  void AddDeltaZCutterAndShank(double dz);
};

/// The cutting part.
class TDB_EXPORT tdbToolCutter : public tdbItem {
 public:
  /// Type 0, without parameters.
  tdbToolCutter();
  /// Sets the type's parameters to their defaults.
  explicit tdbToolCutter(int type);
  tdbToolCutter(const tdbToolCutter& other) = default;
  tdbToolCutter& operator=(const tdbToolCutter& other) = default;

  tdbItem* Clone() const override;
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const override;
  std::string GetFileExt() override;
  bool IsSTL() override;
  bool IsParametric() const override;
  bool GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                double tolerance) override;
  bool HasShape() override;
  kinShape* CreateShape(kinSceneManager* scene, double tolerance, bool extend, double extension,
                        bool* empty, int flags) override;

  /// Sets the parameters of `type` that have a fixed default.
  void InitProfile(int type);
  /// Empties the outline and the parameters and sets the defaults of the own type.
  void ResetProfile();
  /// Builds the outline from type and parameters and stores it as contour XML; for a type that
  /// carries its own text or a model nothing is built.
  /// @param variant  reserved; every value acts as 0
  /// @return false when the parameters are refused (the stored text stays) or, for a type with a
  ///         text of its own, when that is blank
  bool BuildProfile(int variant = 0);

  /// Cutting diameter in the item's unit: DIAMETER, or twice the widest point of a stored
  /// outline; 0 for a model.
  double GetDiameter() const;
  void SetDiameter(double diameter);
  /// Extent of the outline along the axis; 0 when it is refused.
  double GetLength() const;

  /// Placement of the profile plane in the cutter's frame.
  const Transformation<double>& GetProfileCSys() const { return profile_csys_; }
  void SetProfileCSys(const Transformation<double>& csys) { profile_csys_ = csys; }

 private:
  Transformation<double> profile_csys_;
};

/// The body that carries the cutter.
class TDB_EXPORT tdbToolShank : public tdbCompositeItem {
 public:
  /// Sets the type's parameters to their defaults.
  explicit tdbToolShank(int type);
  tdbToolShank(const tdbToolShank& other) = default;
  tdbToolShank& operator=(const tdbToolShank& other) = default;

  tdbItem* Clone() const override;
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const override;
  std::string GetFileExt() override;
  bool IsSTL() override;
  bool IsParametric() const override;
  bool GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                double tolerance) override;
  bool HasShape() override;
  kinShape* CreateShape(kinSceneManager* scene, double tolerance, bool extend, double extension,
                        bool* empty, int flags) override;

  /// As of the cutter.
  void InitProfile();
  void ResetProfile();
  bool BuildProfile();
  double GetDiameter() const;
  double GetLength() const;
};

/// What holds a cutting tool in the spindle or turret.
class TDB_EXPORT tdbToolHolder : public tdbCompositeItem {
 public:
  explicit tdbToolHolder(int type);
  tdbToolHolder(const tdbToolHolder& other) = default;
  tdbToolHolder& operator=(const tdbToolHolder& other) = default;

  tdbItem* Clone() const override;
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const override;
  std::string GetFileExt() override;
  bool IsSTL() override;
  bool IsParametric() const override;
  bool GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                double tolerance) override;
  bool HasShape() override;
  kinShape* CreateShape(kinSceneManager* scene, double tolerance, bool extend, double extension,
                        bool* empty, int flags) override;

  /// As of the cutter; a holder's defaults live in the builder, so no parameter is set.
  void ResetProfile();
  bool BuildProfile(int variant = 0);
  double GetDiameter() const;
  double GetLength() const;

  /// Code of the library component that an older file took the holder from.
  const std::string& GetComponentCode() const { return component_code_; }
  void SetComponentCode(const std::string& code) { component_code_ = code; }

 private:
  std::string component_code_;
};

/// A pure placement between two parts of a tool.
class TDB_EXPORT tdbFixedLink : public tdbCompositeItem {
 public:
  explicit tdbFixedLink(int type);
  tdbFixedLink(const tdbFixedLink& other) = default;
  tdbFixedLink& operator=(const tdbFixedLink& other) = default;

  tdbItem* Clone() const override;
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const override;
  bool IsSTL() override;
  bool IsParametric() const override;
  void Update() override;
  bool GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                double tolerance) override;
  bool HasShape() override;
  kinShape* CreateShape(kinSceneManager* scene, double tolerance, bool extend, double extension,
                        bool* empty, int flags) override;
};

/// An angle head. It is never written to a file.
class TDB_EXPORT tdbToolAngleHead : public tdbCompositeItem {
 public:
  explicit tdbToolAngleHead(int type);
  tdbToolAngleHead(const tdbToolAngleHead& other) = default;
  tdbToolAngleHead& operator=(const tdbToolAngleHead& other) = default;

  tdbItem* Clone() const override;
  /// Appends nothing.
  void WriteXml(std::string& out, const std::vector<std::string>& search_paths) const override;
  bool IsSTL() override;
  bool IsParametric() const override;
  bool GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                double tolerance) override;
  bool HasShape() override;
  kinShape* CreateShape(kinSceneManager* scene, double tolerance, bool extend, double extension,
                        bool* empty, int flags) override;

  /// Placement of the head's driven end in the head's frame.
  const Transformation<double>& GetEndTransformation() const { return end_; }
  void SetEndTransformation(const Transformation<double>& end) { end_ = end; }

 private:
  Transformation<double> end_;
};

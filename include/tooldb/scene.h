#pragma once

#include <string>
#include <vector>

#include "tooldb/export.h"
#include "tooldb/geometry.h"

class tdbToolMaterial;

/// @file
/// The scene that shapes live in. A host implements these classes over its own; without one the
/// library's own scene manager serves.

/// Anything in a scene that has a name.
class TDB_EXPORT kinObject {
 public:
  virtual ~kinObject();
  virtual const std::string& GetName() const = 0;
  virtual void SetName(const std::string& name) = 0;
};

/// Anything in a scene that is drawn.
class TDB_EXPORT kinGraphicObject : public kinObject {
 public:
  virtual void SetMaterial(const tdbToolMaterial& material) = 0;
  virtual const tdbToolMaterial& GetMaterial() const = 0;
};

/// A triangle mesh in a scene.
class TDB_EXPORT kinShape : public kinGraphicObject {
 public:
  /// Tells that the file which the shape was loaded from is in inches; its triangles are then
  /// handed out in millimetres.
  virtual void SetInches(bool inches) = 0;
  /// Appends the triangles, each vertex and normal placed by `placement`.
  virtual void GetTriangles(const Transformation<double>& placement,
                            std::vector<Triangle<double>>& out) const = 0;
  /// Gives the shape back to its scene; it must not be used afterwards.
  virtual void Release() = 0;
};

/// Makes shapes.
class TDB_EXPORT kinSceneManager {
 public:
  virtual ~kinSceneManager();
  /// Loads a model file.
  /// @param options  the item's file options, as they stand
  /// @return a shape to be released by the caller; null when the file cannot be loaded
  virtual kinShape* LoadShape(const std::string& path, const std::string& options) = 0;
  /// Makes a shape of triangles; to be released by the caller, null on failure.
  virtual kinShape* CreateShape(const std::vector<Triangle<double>>& triangles) = 0;
};

/// The library's own scene manager: it loads STL files, text and binary. Borrowed, never null.
TDB_EXPORT kinSceneManager* tdbDefaultSceneManager();

#pragma once

#include <string>
#include <utility>
#include <vector>

#include "geom/transform.h"
#include "tooldb/item.h"
#include "tooldb/scene.h"

/// @file
/// A host's scene for tests: it knows one model file and counts its shapes.

namespace tooldb::test {

class HostScene final : public kinSceneManager {
 public:
  class Shape final : public kinShape {
   public:
    Shape(HostScene& scene, std::vector<Facet> triangles)
        : scene_(&scene), triangles_(std::move(triangles)) {
      ++scene_->live_shapes;
    }
    const std::string& GetName() const override { return name_; }
    void SetName(const std::string& name) override { name_ = name; }
    void SetMaterial(const tdbToolMaterial& material) override { material_ = material; }
    const tdbToolMaterial& GetMaterial() const override { return material_; }
    void SetInches(bool inches) override { scale_ = inches ? 25.4 : 1; }
    void GetTriangles(const Transformation<double>& placement,
                      std::vector<Facet>& out) const override {
      for (Facet f : triangles_) {
        for (Vec3* corner : {&f.a, &f.b, &f.c}) {
          *corner = transform_point(placement, scale_ * *corner);
        }
        out.push_back(f);
      }
    }
    void Release() override {
      --scene_->live_shapes;
      delete this;
    }
    const std::vector<Facet>& Triangles() const { return triangles_; }

   private:
    HostScene* scene_;
    std::vector<Facet> triangles_;
    std::string name_;
    tdbToolMaterial material_;
    double scale_ = 1;
  };

  kinShape* LoadShape(const std::string& path, const std::string& options) override {
    loaded_options = options;
    return path == "host:model" ? CreateShape(model) : nullptr;
  }
  kinShape* CreateShape(const std::vector<Facet>& triangles) override {
    return new Shape(*this, triangles);
  }

  std::vector<Facet> model;
  std::string loaded_options;
  int live_shapes = 0;
};

}  // namespace tooldb::test

#pragma once

#include <string>
#include <vector>

#include "geom/vector_math.h"
#include "tooldb/scene.h"

/// @file
/// A host's scene for tests: it knows one model file and counts its shapes.

namespace tooldb::test {

class HostScene final : public kinSceneManager {
 public:
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

 private:
  class Shape final : public kinShape {
   public:
    Shape(HostScene& scene, const std::vector<Facet>& triangles)
        : scene_(scene), shape_(tdbDefaultSceneManager()->CreateShape(triangles)) {
      ++scene_.live_shapes;
    }
    const std::string& GetName() const override { return shape_->GetName(); }
    void SetName(const std::string& name) override { shape_->SetName(name); }
    void SetMaterial(const tdbToolMaterial& material) override { shape_->SetMaterial(material); }
    const tdbToolMaterial& GetMaterial() const override { return shape_->GetMaterial(); }
    void SetInches(bool inches) override { shape_->SetInches(inches); }
    void GetTriangles(const Transformation<double>& placement,
                      std::vector<Facet>& out) const override {
      shape_->GetTriangles(placement, out);
    }
    void Release() override {
      --scene_.live_shapes;
      shape_->Release();
      delete this;
    }

   private:
    HostScene& scene_;
    kinShape* shape_;
  };
};

}  // namespace tooldb::test

#include "tooldb/scene.h"

#include <memory>
#include <utility>

#include "geom/transform.h"
#include "tooldb/item.h"
#include "tooldb/platform/guard.h"
#include "tooldb/profile/stl_file.h"

namespace tooldb {
namespace {

constexpr double kMillimetresPerInch = 25.4;

/// A shape that owns its triangles; `Release` deletes it.
class MeshShape final : public kinShape {
 public:
  explicit MeshShape(std::vector<Facet> triangles) : triangles_(std::move(triangles)) {}

  const std::string& GetName() const override { return name_; }
  void SetName(const std::string& name) override { name_ = name; }
  void SetMaterial(const tdbToolMaterial& material) override { material_ = material; }
  const tdbToolMaterial& GetMaterial() const override { return material_; }
  void SetInches(bool inches) override { unit_ = inches ? kMillimetresPerInch : 1; }

  void GetTriangles(const Transformation<double>& placement,
                    std::vector<Triangle<double>>& out) const override {
    const std::size_t before = out.size();
    out.insert(out.end(), triangles_.begin(), triangles_.end());
    const auto scale = [this](Vec3& v) { v = unit_ * v; };
    for (Facet& f : std::span(out).subspan(before)) {
      scale(f.a);
      scale(f.b);
      scale(f.c);
    }
    transform_mesh(std::span(out).subspan(before), placement);
  }

  void Release() override { delete this; }

 private:
  std::string name_;
  tdbToolMaterial material_{0.9F, 0.9F, 0.9F, 0, "steel.jpg"};
  std::vector<Facet> triangles_;
  double unit_ = 1;
};

/// Loads STL files.
class StlSceneManager final : public kinSceneManager {
 public:
  kinShape* LoadShape(const std::string& path, const std::string& /*options*/) override {
    kinShape* none = nullptr;
    return guarded(none, [&]() -> kinShape* { return new MeshShape(read_stl_file(path)); });
  }
  kinShape* CreateShape(const std::vector<Triangle<double>>& triangles) override {
    kinShape* none = nullptr;
    return guarded(none, [&]() -> kinShape* { return new MeshShape(triangles); });
  }
};

}  // namespace
}  // namespace tooldb

kinObject::~kinObject() = default;
kinSceneManager::~kinSceneManager() = default;

kinSceneManager* tdbDefaultSceneManager() {
  static tooldb::StlSceneManager manager;
  return &manager;
}

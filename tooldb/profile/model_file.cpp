#include "tooldb/profile/model_file.h"

#include <memory>

#include "geom/transform.h"
#include "tooldb/scene.h"

namespace tooldb {
namespace {

constexpr int kInches = 1;

struct Release {
  void operator()(kinShape* shape) const { shape->Release(); }
};

bool has_area(const Facet& f) { return is_finite(f.n) && f.n != Vec3{}; }

}  // namespace

std::optional<std::vector<Facet>> model_triangles(const tdbItem& item, kinSceneManager* scene) {
  if (*item.GetShapeFilePath() == '\0') return std::nullopt;
  if (scene == nullptr) scene = tdbDefaultSceneManager();
  const std::unique_ptr<kinShape, Release> shape(
      scene->LoadShape(item.GetShapeFilePath(), item.GetFileOptions()));
  if (!shape) return std::nullopt;
  shape->SetInches(item.GetFileUnits() == kInches);
  std::vector<Facet> triangles;
  shape->GetTriangles(Transformation<double>(), triangles);
  transform_mesh(triangles, item.GetShapePos());
  std::erase_if(triangles, [](const Facet& f) { return !has_area(f); });
  return triangles;
}

}  // namespace tooldb

#include <cmath>
#include <memory>

#include "tooldb/platform/guard.h"
#include "tooldb/profile.h"
#include "tooldb/profile/assembly_mesh.h"
#include "tooldb/scene.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

// Triangles and scene shapes of items. A tool is asked through its items; cutting tools and links
// have no shape of their own.

namespace tooldb {
namespace {

using MeshOf = bool (*)(tdbItem& item, const BodyMesh& how, std::vector<Facet>& mesh);

bool append_hideable_assembly(tdbItem& item, const BodyMesh& how, std::vector<Facet>& mesh) {
  return !item.IsHideShape() && append_assembly_mesh(item, how, mesh);
}

// Runs `append`, and takes back what it appended when it fails.
template <class Append>
bool append_or_nothing(std::vector<Facet>& mesh, double tolerance, const Append& append) {
  if (!(tolerance > 0) || !std::isfinite(tolerance)) return false;
  const std::size_t before = mesh.size();
  const bool made = guarded(false, append);
  if (!made) mesh.erase(mesh.begin() + static_cast<std::ptrdiff_t>(before), mesh.end());
  return made;
}

bool get_shape(tdbItem& item, MeshOf mesh_of, const BodyMesh& how, std::vector<Facet>& mesh) {
  return append_or_nothing(mesh, how.tolerance, [&] { return mesh_of(item, how, mesh); });
}

kinShape* make_shape(tdbItem& item, kinSceneManager* scene, const std::vector<Facet>& mesh) {
  const auto release = [](kinShape* unfinished) { unfinished->Release(); };
  std::unique_ptr<kinShape, decltype(release)> shape(scene->CreateShape(mesh));
  if (shape == nullptr) return nullptr;
  shape->SetName(item.GetName());
  shape->SetMaterial(item.GetMaterial());
  return shape.release();
}

kinShape* create_shape(tdbItem& item, MeshOf mesh_of, const BodyMesh& how, bool* empty) {
  kinSceneManager* scene = how.scene == nullptr ? tdbDefaultSceneManager() : how.scene;
  std::vector<Facet> mesh;
  kinShape* shape = nullptr;
  if (get_shape(item, mesh_of, how, mesh)) {
    shape = guarded(shape, [&] { return make_shape(item, scene, mesh); });
  }
  if (empty != nullptr) *empty = shape == nullptr;
  return shape;
}

kinShape* no_shape(bool* empty) {
  if (empty != nullptr) *empty = true;
  return nullptr;
}

BodyMesh body_mesh(kinSceneManager* scene, double tolerance, bool extend, double extension) {
  return {scene, tolerance, extend ? extension : 0, 0, 360};
}

}  // namespace
}  // namespace tooldb

using tooldb::append_body_mesh;
using tooldb::append_hideable_assembly;
using tooldb::body_mesh;
using tooldb::create_shape;
using tooldb::get_shape;
using tooldb::no_shape;

bool tdbToolCutter::GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                             double tolerance) {
  return get_shape(*this, append_body_mesh, body_mesh(scene, tolerance, false, 0), triangles);
}
kinShape* tdbToolCutter::CreateShape(kinSceneManager* scene, double tolerance, bool extend,
                                     double extension, bool* empty, int /*flags*/) {
  return create_shape(*this, append_body_mesh, body_mesh(scene, tolerance, extend, extension),
                      empty);
}

bool tdbToolShank::GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                            double tolerance) {
  return get_shape(*this, append_body_mesh, body_mesh(scene, tolerance, false, 0), triangles);
}
kinShape* tdbToolShank::CreateShape(kinSceneManager* scene, double tolerance, bool extend,
                                    double extension, bool* empty, int /*flags*/) {
  return create_shape(*this, append_body_mesh, body_mesh(scene, tolerance, extend, extension),
                      empty);
}

bool tdbToolHolder::GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                             double tolerance) {
  return get_shape(*this, append_body_mesh, body_mesh(scene, tolerance, false, 0), triangles);
}
kinShape* tdbToolHolder::CreateShape(kinSceneManager* scene, double tolerance, bool extend,
                                     double extension, bool* empty, int /*flags*/) {
  return create_shape(*this, append_body_mesh, body_mesh(scene, tolerance, extend, extension),
                      empty);
}

bool tdbToolAngleHead::GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                                double tolerance) {
  return get_shape(*this, append_body_mesh, body_mesh(scene, tolerance, false, 0), triangles);
}
kinShape* tdbToolAngleHead::CreateShape(kinSceneManager* scene, double tolerance, bool extend,
                                        double extension, bool* empty, int /*flags*/) {
  return create_shape(*this, append_body_mesh, body_mesh(scene, tolerance, extend, extension),
                      empty);
}

bool tdbToolComponent::GetProfile(kinSceneManager* /*scene*/,
                                  std::vector<std::vector<Point2d<double>>>& /*contours*/,
                                  double /*tolerance*/, long /*mode*/) {
  return false;
}
bool tdbToolComponent::GetShape(kinSceneManager* scene, std::vector<Triangle<double>>& triangles,
                                double tolerance) {
  return get_shape(*this, append_hideable_assembly, body_mesh(scene, tolerance, false, 0),
                   triangles);
}
kinShape* tdbToolComponent::CreateShape(kinSceneManager* scene, double tolerance, bool extend,
                                        double extension, bool* empty, int /*flags*/) {
  return create_shape(*this, append_hideable_assembly,
                      body_mesh(scene, tolerance, extend, extension), empty);
}

bool tdbCuttingTool::GetShape(kinSceneManager* /*scene*/,
                              std::vector<Triangle<double>>& /*triangles*/, double /*tolerance*/) {
  return false;
}
kinShape* tdbCuttingTool::CreateShape(kinSceneManager* /*scene*/, double /*tolerance*/,
                                      bool /*extend*/, double /*extension*/, bool* empty,
                                      int /*flags*/) {
  return no_shape(empty);
}

bool tdbFixedLink::GetShape(kinSceneManager* /*scene*/,
                            std::vector<Triangle<double>>& /*triangles*/, double /*tolerance*/) {
  return false;
}
kinShape* tdbFixedLink::CreateShape(kinSceneManager* /*scene*/, double /*tolerance*/,
                                    bool /*extend*/, double /*extension*/, bool* empty,
                                    int /*flags*/) {
  return no_shape(empty);
}

bool tdbTool::GetProfile(kinSceneManager* /*scene*/,
                         std::vector<std::vector<Point2d<double>>>& /*contours*/,
                         double /*tolerance*/, long /*mode*/) {
  return true;
}
bool tdbTool::GetShape(kinSceneManager* /*scene*/, std::vector<Triangle<double>>& /*triangles*/,
                       double /*tolerance*/) {
  return false;
}
kinShape* tdbTool::CreateShape(kinSceneManager* /*scene*/, double /*tolerance*/, bool /*extend*/,
                               double /*extension*/, bool* empty, int /*flags*/) {
  return no_shape(empty);
}

bool tdbProfile::GetAssemblyShape(tdbItem& root, kinSceneManager* scene,
                                  std::vector<Triangle<double>>& triangles, double tolerance) {
  return get_shape(root, tooldb::append_assembly_mesh, body_mesh(scene, tolerance, false, 0),
                   triangles);
}

bool tdbProfile::GetSectionShape(tdbTool& tool, kinSceneManager* scene,
                                 std::vector<Triangle<double>>& triangles, double tolerance) {
  return tooldb::append_or_nothing(triangles, tolerance, [&] {
    return tooldb::append_section_mesh(tool, body_mesh(scene, tolerance, false, 0), triangles);
  });
}

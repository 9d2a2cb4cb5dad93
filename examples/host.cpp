// What a simulator does with the library: it brings its own scene, hears of errors and progress,
// opens a folder, and asks every tool for outlines and meshes. host FOLDER
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "tooldb/tooldb.h"

namespace {

// A mesh of this host's scene.
class HostShape : public kinShape {
 public:
  explicit HostShape(std::vector<Triangle<double>> triangles) : triangles_(std::move(triangles)) {}

  const std::string& GetName() const override { return name_; }
  void SetName(const std::string& name) override { name_ = name; }
  void SetMaterial(const tdbToolMaterial& material) override { material_ = material; }
  const tdbToolMaterial& GetMaterial() const override { return material_; }
  void SetInches(bool inches) override { scale_ = inches ? 25.4 : 1.0; }
  void GetTriangles(const Transformation<double>& placement,
                    std::vector<Triangle<double>>& out) const override {
    for (const Triangle<double>& t : triangles_) {
      out.push_back({Place(placement, t.a, scale_, 1), Place(placement, t.b, scale_, 1),
                     Place(placement, t.c, scale_, 1), Place(placement, t.n, 1, 0)});
    }
  }
  void Release() override { delete this; }

 private:
  // `shift` is 1 for a point and 0 for a direction.
  static Vec3d<double> Place(const Transformation<double>& p, const Vec3d<double>& v, double scale,
                             double shift) {
    const auto row = [&](int i) {
      return (p(i, 0) * v.x + p(i, 1) * v.y + p(i, 2) * v.z) * scale + p(i, 3) * shift;
    };
    return {row(0), row(1), row(2)};
  }

  std::string name_;
  tdbToolMaterial material_;
  std::vector<Triangle<double>> triangles_;
  double scale_ = 1.0;
};

// Loads model files through the library's own reader, and keeps count of what is in the scene.
class HostScene : public kinSceneManager {
 public:
  kinShape* LoadShape(const std::string& path, const std::string& options) override {
    kinShape* loaded = tdbDefaultSceneManager()->LoadShape(path, options);
    if (loaded == nullptr) std::cerr << "no model in " << path << '\n';
    return loaded;
  }
  kinShape* CreateShape(const std::vector<Triangle<double>>& triangles) override {
    ++shapes_;
    return new HostShape(triangles);
  }
  int ShapeCount() const { return shapes_; }

 private:
  int shapes_ = 0;
};

int print_error(void*, const tdbToolDB*, tdbError* error) {
  std::cerr << "error " << error->code << ": " << error->message << '\n';
  return 0;
}

int print_progress(void*, tdbToolDB*, std::string message) {
  std::cout << message << '\n';
  return 0;
}

struct Collector {
  HostScene& scene;
  double tolerance;
};

// Visits one item of a tool: its outline, and its shape in the scene.
void show_item(void* context, tdbItem* item) {
  auto& [scene, tolerance] = *static_cast<Collector*>(context);
  std::vector<std::vector<Point2d<double>>> contours;
  const bool is_body = dynamic_cast<tdbToolCutter*>(item) != nullptr ||
                       dynamic_cast<tdbToolShank*>(item) != nullptr ||
                       dynamic_cast<tdbToolHolder*>(item) != nullptr;
  if (!is_body || !item->GetProfile(&scene, contours, tolerance, 1)) return;
  std::cout << "  " << item->GetName() << ": " << contours.front().size() << " points";
  bool empty = true;
  kinShape* shape = item->CreateShape(&scene, tolerance, false, 0, &empty, 0);
  if (shape != nullptr && !empty) {
    std::vector<Triangle<double>> triangles;
    shape->GetTriangles(item->GetAbsPos(), triangles);
    std::cout << ", " << triangles.size() << " triangles";
  }
  if (shape != nullptr) shape->Release();
  std::cout << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: host FOLDER\n";
    return 2;
  }
  tdbToolDB tools("host", 0);
  tools.SetErrorCallback(print_error, nullptr);
  tools.SetLogCallback(print_progress, nullptr);
  if (!tools.Init(argv[1]) || !tools.Read()) return 1;
  HostScene scene;
  Collector collector{scene, 0.01};
  for (int i = 0; i < tools.GetToolCount(1); ++i) {
    tdbTool* tool = tools.GetTool(i, 1);
    std::cout << tool->GetCode() << '\n';
    tool->Visit(show_item, &collector);
  }
  std::cout << scene.ShapeCount() << " shapes made\n";
}

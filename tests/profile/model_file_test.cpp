#include <gtest/gtest.h>

#include <cmath>

#include "geom/polyline.h"
#include "geom/stl.h"
#include "tests/geom/meshes.h"
#include "tests/geom/points.h"
#include "tests/profile/bodies.h"
#include "tests/storage/scratch_folder.h"
#include "tooldb/placement.h"
#include "tooldb/profile.h"
#include "tooldb/scene.h"

namespace tooldb::test {
namespace {

// A shaft of 20 x 40 with a collar of 30 x 10 on top.
Mesh shaft() { return revolved(points("0 0 ; 10 0 ; 10 40 ; 15 40 ; 15 50 ; 0 50"), 0.001); }

tdbToolCutter model_cutter(const std::string& path) {
  tdbToolCutter cutter(6);
  cutter.SetShapeFilePath(path.c_str());
  return cutter;
}

TEST(ModelFile, GivesItsSilhouette) {
  const ScratchFolder folder;
  for (const std::string& bytes : {stl_text(shaft(), "s"), stl_binary(shaft())}) {
    tdbToolCutter cutter = model_cutter(folder.MakeFile("shaft.stl", bytes));
    EXPECT_EQ(tdbProfile::OutlineError(cutter), "");
    // The upper end of a silhouette is brought down to the tip plane along the axis.
    expect_points(only_contour(cutter, 0.01, 1),
                  points("0 0 ; 0 50 ; 15 50 ; 15 40 ; 10 40 ; 10 0 ; 0 0"), 0.01);
  }
}

// A box below the turning plane, as the body of a turning tool.
TEST(ModelFile, GivesItsTurningSection) {
  const ScratchFolder folder;
  const Mesh bar = extruded(points("0 0 ; 10 0 ; 10 20 ; 0 20"), -5, 0);
  tdbToolCutter cutter = model_cutter(folder.MakeFile("bar.stl", stl_binary(bar)));
  const Polyline contour = only_contour(cutter, 0.01);
  EXPECT_EQ(contour.front(), contour.back());
  EXPECT_NEAR(signed_area(contour), -200, 1e-3);
  // A body that the turning plane misses has no section.
  cutter.SetShapePos(tdbMakePlacement({0, -3, 0}, {}));
  Contours contours;
  EXPECT_FALSE(cutter.GetProfile(nullptr, contours, 0.01, 0));
}

TEST(ModelFile, ThatIsNoneIsRefused) {
  const ScratchFolder folder;
  const std::string broken = stl_text(shaft(), "s").substr(0, 500);
  for (const std::string& path :
       {std::string(), std::string("/no/such/file.stl"), folder.Path(),
        folder.MakeFile("empty.stl", ""), folder.MakeFile("broken.stl", broken)}) {
    tdbToolCutter cutter = model_cutter(path);
    Contours contours{points("1 1 ; 2 2 ; 3 1")};
    Mesh mesh;
    for (const long mode : {0L, 1L}) {
      EXPECT_FALSE(cutter.GetProfile(nullptr, contours, 0.01, mode)) << path;
    }
    EXPECT_FALSE(cutter.GetShape(nullptr, mesh, 0.01)) << path;
    EXPECT_EQ(contours, Contours{points("1 1 ; 2 2 ; 3 1")});
    EXPECT_FALSE(tdbProfile::OutlineError(cutter).empty()) << path;
    EXPECT_NE(tdbProfile::OutlineError(cutter).find(path), std::string::npos) << path;
  }
}

// A host's scene that knows one model.
struct HostScene final : kinSceneManager {
  kinShape* LoadShape(const std::string& path, const std::string& options) override {
    loaded_options = options;
    return path == "host:model" ? CreateShape(model) : nullptr;
  }
  kinShape* CreateShape(const Mesh& mesh) override {
    return tdbDefaultSceneManager()->CreateShape(mesh);
  }

  Mesh model;
  std::string loaded_options;
};

TEST(HostModel, IsLoadedAndScaled) {
  HostScene scene;
  scene.model = shaft();
  // A host may hand out facets without area and without a number.
  scene.model.push_back({{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {}});
  scene.model.push_back({{std::nan(""), 0, 0}, {1, 0, 0}, {0, 1, 0}, {}});
  tdbToolShank shank(3);
  shank.SetShapeFilePath("host:model");
  shank.SetFileOptions("coarse");
  shank.SetFileUnits(1);
  shank.SetShapePos(tdbMakePlacement({0, 0, 1}, {}));
  const Polyline contour = only_contour(shank, 0.01, 1, &scene);
  EXPECT_EQ(scene.loaded_options, "coarse");
  // Above the tip plane both ends are brought down to it.
  EXPECT_EQ(contour.front(), (Vec2{0, 0}));
  EXPECT_NEAR(contour.at(1).y, 1 + 50 * 25.4, 0.01);
  EXPECT_EQ(contour.back(), (Vec2{0, 0}));
  Mesh mesh;
  ASSERT_TRUE(shank.GetShape(&scene, mesh, 0.1));
  EXPECT_EQ(mesh.size(), scene.model.size() - 2);
  expect_solid(mesh, check_mesh(shaft()).volume * std::pow(25.4, 3), 1e-6);
  shank.SetShapeFilePath("host:other");
  EXPECT_FALSE(shank.GetShape(&scene, mesh, 0.1));
}

}  // namespace
}  // namespace tooldb::test

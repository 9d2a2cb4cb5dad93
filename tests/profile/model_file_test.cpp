#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "geom/polyline.h"
#include "geom/revolve.h"
#include "geom/stl.h"
#include "tests/geom/mesh_check.h"
#include "tests/profile/bodies.h"
#include "tests/profile/host_scene.h"
#include "tooldb/placement.h"
#include "tooldb/profile.h"

namespace tooldb::test {
namespace {

using Contours = std::vector<std::vector<Point2d<double>>>;

// A shaft of 20 x 40 with a collar of 30 x 10 on top; its foot at `foot`.
std::vector<Facet> shaft(double foot) {
  std::vector<Facet> mesh;
  const Polyline outline{{0, foot},       {10, foot},      {10, foot + 40},
                         {15, foot + 40}, {15, foot + 50}, {0, foot + 50}};
  EXPECT_TRUE(revolve(outline, {0.001, 0, 360}, mesh));
  return mesh;
}

// A box from (0, -5, 0) to (10, 0, 20): the body of a turning tool below the turning plane.
std::vector<Facet> turning_box() {
  tdbToolCutter bar(8);
  bar.SetProfileXml(contour_of("0 0 ; 10 0 ; 10 20 ; 0 20").c_str());
  std::vector<Facet> mesh;
  EXPECT_TRUE(bar.GetShape(nullptr, mesh, 0.1));
  return mesh;
}

// A folder of its own for each test, gone afterwards.
class ModelFile : public testing::Test {
 protected:
  ModelFile() : folder_(std::filesystem::path(testing::TempDir()) / Name()) {
    std::filesystem::create_directories(folder_);
  }
  ~ModelFile() override { std::filesystem::remove_all(folder_); }

  std::string Write(const std::string& name, const std::string& bytes) const {
    const auto path = folder_ / name;
    std::ofstream(path, std::ios::binary) << bytes;
    return path.string();
  }

 private:
  static std::string Name() {
    return std::string("tooldb_model_file_") +
           testing::UnitTest::GetInstance()->current_test_info()->name();
  }

  std::filesystem::path folder_;
};

tdbToolCutter model_cutter(const std::string& path) {
  tdbToolCutter cutter(6);
  cutter.SetShapeFilePath(path.c_str());
  return cutter;
}

TEST_F(ModelFile, GivesItsSilhouette) {
  for (const std::string& bytes : {stl_text(shaft(0), "s"), stl_binary(shaft(0))}) {
    tdbToolCutter cutter = model_cutter(Write("shaft.stl", bytes));
    Contours contours;
    EXPECT_EQ(tdbProfile::OutlineError(cutter), "");
    ASSERT_TRUE(cutter.GetProfile(nullptr, contours, 0.01, 1));
    ASSERT_EQ(contours.size(), 1U);
    // The upper end of a silhouette is brought down to the tip plane along the axis.
    const Polyline expected{{0, 0}, {0, 50}, {15, 50}, {15, 40}, {10, 40}, {10, 0}, {0, 0}};
    ASSERT_EQ(contours[0].size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_LT(distance(contours[0][i], expected[i]), 0.01) << i;
    }
  }
}

TEST_F(ModelFile, SilhouetteAboveTheTipPlaneReachesIt) {
  tdbToolCutter cutter = model_cutter(Write("shaft.stl", stl_binary(shaft(0))));
  cutter.SetShapePos(tdbMakePlacement({0, 0, 7}, {}));
  Contours contours;
  ASSERT_TRUE(cutter.GetProfile(nullptr, contours, 0.01, 1));
  // The points on the tip plane lie on the axis, as the silhouette's ends do.
  EXPECT_EQ(contours[0].front(), (Vec2{0, 0}));
  EXPECT_EQ(contours[0].back(), (Vec2{0, 0}));
  EXPECT_NEAR(signed_area(contours[0]), -(10 * 40 + 15 * 10), 0.5);
}

TEST_F(ModelFile, GivesItsTurningSection) {
  tdbToolCutter cutter = model_cutter(Write("bar.stl", stl_binary(turning_box())));
  Contours contours;
  ASSERT_TRUE(cutter.GetProfile(nullptr, contours, 0.01, 0));
  ASSERT_EQ(contours.size(), 1U);
  EXPECT_EQ(contours[0].front(), contours[0].back());
  EXPECT_NEAR(signed_area(contours[0]), -200, 1e-3);
  for (const Vec2 p : contours[0]) {
    EXPECT_TRUE(std::abs(p.x) < 1e-6 || std::abs(p.x - 10) < 1e-6) << p.x;
    EXPECT_TRUE(std::abs(p.y) < 1e-6 || std::abs(p.y - 20) < 1e-6) << p.y;
  }
  // A body that the turning plane misses has no section.
  cutter.SetShapePos(tdbMakePlacement({0, -3, 0}, {}));
  contours.clear();
  EXPECT_FALSE(cutter.GetProfile(nullptr, contours, 0.01, 0));
}

TEST_F(ModelFile, IsPlacedAndScaled) {
  tdbToolHolder holder(3);
  holder.SetShapeFilePath(Write("shaft.stl", stl_binary(shaft(0))).c_str());
  holder.SetFileUnits(1);
  holder.SetShapePos(tdbMakePlacement({0, 0, 7}, {}));
  std::vector<Facet> mesh;
  ASSERT_TRUE(holder.GetShape(nullptr, mesh, 0.1));
  const MeshCheck check = check_mesh(mesh);
  EXPECT_EQ(check.open_edges, 0U);
  EXPECT_NEAR(check.volume, signed_volume(shaft(0)) * std::pow(25.4, 3), 1e-3 * check.volume);
  const auto [low, high] = std::ranges::minmax(mesh, {}, [](const Facet& f) { return f.a.z; });
  EXPECT_NEAR(low.a.z, 7, 1e-6);
  EXPECT_NEAR(high.a.z, 7 + 50 * 25.4, 1e-3);
}

TEST_F(ModelFile, MirroredFacesOutwards) {
  tdbToolCutter cutter = model_cutter(Write("shaft.stl", stl_binary(shaft(0))));
  Transformation<double> mirror;
  mirror(0, 0) = -1;
  cutter.SetShapePos(mirror);
  std::vector<Facet> mesh;
  ASSERT_TRUE(cutter.GetShape(nullptr, mesh, 0.1));
  const MeshCheck check = check_mesh(mesh);
  EXPECT_NEAR(check.volume, signed_volume(shaft(0)), 1e-3 * check.volume);
  EXPECT_LT(check.worst_normal, 1e-9);
}

TEST_F(ModelFile, ThatIsNoneIsRefused) {
  const std::string broken = stl_text(shaft(0), "s").substr(0, 500);
  for (const std::string& path :
       {std::string(), std::string("/no/such/file.stl"), testing::TempDir(), Write("empty.stl", ""),
        Write("broken.stl", broken), Write("word.stl", "solid? no")}) {
    tdbToolCutter cutter = model_cutter(path);
    Contours contours{{{1, 1}, {2, 2}, {3, 1}}};
    const Contours before = contours;
    std::vector<Facet> mesh;
    for (const long mode : {0L, 1L}) {
      EXPECT_FALSE(cutter.GetProfile(nullptr, contours, 0.01, mode)) << path;
    }
    EXPECT_FALSE(cutter.GetShape(nullptr, mesh, 0.01)) << path;
    EXPECT_EQ(contours, before);
    EXPECT_FALSE(tdbProfile::OutlineError(cutter).empty()) << path;
    EXPECT_NE(tdbProfile::OutlineError(cutter).find(path), std::string::npos) << path;
  }
}

TEST(HostModel, IsLoadedScaledAndReleased) {
  HostScene scene;
  scene.model = shaft(1);
  // A host may hand out facets without area and without a number.
  scene.model.push_back({{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {}});
  scene.model.push_back({{std::nan(""), 0, 0}, {1, 0, 0}, {0, 1, 0}, {}});
  tdbToolShank shank(3);
  shank.SetShapeFilePath("host:model");
  shank.SetFileOptions("coarse");
  shank.SetFileUnits(1);
  Contours contours;
  ASSERT_TRUE(shank.GetProfile(&scene, contours, 0.01, 1));
  EXPECT_EQ(scene.loaded_options, "coarse");
  EXPECT_EQ(contours[0].front(), (Vec2{0, 0}));
  EXPECT_NEAR(contours[0][1].y, 51 * 25.4, 0.01);
  std::vector<Facet> mesh;
  ASSERT_TRUE(shank.GetShape(&scene, mesh, 0.1));
  EXPECT_EQ(mesh.size(), scene.model.size() - 2);
  shank.SetShapeFilePath("host:other");
  EXPECT_FALSE(shank.GetShape(&scene, mesh, 0.1));
  EXPECT_EQ(scene.live_shapes, 0);
}

}  // namespace
}  // namespace tooldb::test

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/geom/meshes.h"
#include "tests/geom/points.h"
#include "tests/profile/bodies.h"
#include "tooldb/placement.h"
#include "tooldb/profile.h"
#include "tooldb/scene.h"
#include "tooldb/tool.h"

namespace tooldb::test {
namespace {

using std::numbers::pi;

Mesh mesh_of(tdbItem& item, double tolerance) {
  Mesh mesh;
  EXPECT_TRUE(item.GetShape(nullptr, mesh, tolerance));
  return mesh;
}

void expect_box(const Mesh& mesh, const Vec3& low, const Vec3& high) {
  Vec3 least = mesh.at(0).a;
  Vec3 most = least;
  for (const Facet& f : mesh) {
    for (const Vec3& p : {f.a, f.b, f.c}) {
      least = {std::min(least.x, p.x), std::min(least.y, p.y), std::min(least.z, p.z)};
      most = {std::max(most.x, p.x), std::max(most.y, p.y), std::max(most.z, p.z)};
    }
  }
  EXPECT_LT(length(least - low), 1e-9) << least.x << ' ' << least.y << ' ' << least.z;
  EXPECT_LT(length(most - high), 1e-9) << most.x << ' ' << most.y << ' ' << most.z;
}

TEST(BodyMesh, OfEveryKindIsSolid) {
  for (const AnyBody& body : all_bodies()) {
    SCOPED_TRACE(body.Name());
    const auto item = body.Make();
    ASSERT_TRUE(build(*item));
    const double volume = (body.IsFlat() ? 4.76 : 1) * body.Measure(*item);
    for (const double tolerance : {0.5, 0.01}) {
      // A mesh lies inside the true body, smaller by no more than its tolerance makes it.
      EXPECT_EQ(expect_solid(mesh_of(*item, tolerance), volume, tolerance / 2).euler, 2);
    }
  }
}

TEST(BodyMesh, HasTheFacetsOfItsTolerance) {
  // Half of the tolerance goes to the chords round the axis, 32, half to the 16 of the outline.
  EXPECT_EQ(mesh_of(*make_body("cutter", 1, "DIAMETER=20"), 0.1).size(), 32U * (2 * 16 - 2));
  EXPECT_LT(mesh_of(*make_body("cutter", 1), 1e-9).size(), 20'000'000U);
}

// Where extruded bodies lie across the plane that they are drawn in.
struct ThicknessCase {
  std::string_view kind;
  int type;
  std::string_view params;
  double low;
  double high;  // not above low: no mesh
};

constexpr ThicknessCase kThicknesses[] = {
    {"cutter", 7, "EXTRUDED_HMIN=-2 EXTRUDED_HMAX=1.5", -2, 1.5},
    {"cutter", 8, "", -5, 0},
    {"shank", 5, "", -12.5, 12.5},
    {"holder", 4, "EXTRUDED_HMAX=20", -12.5, 20},
    {"holder", 4, "EXTRUDED_HMAX=-12.5", 0, 0},
    {"shank", 5, "EXTRUDED_HMIN=a", 0, 0},
};

TEST(BodyMesh, OfAnExtrudedBodyLiesBetweenItsHeights) {
  for (const auto& [kind, type, params, low, high] : kThicknesses) {
    SCOPED_TRACE(params);
    const auto item = make_body(kind, type, params, "0 0 ; 4 0 ; 4 20 ; 0 20");
    Mesh mesh(1);
    ASSERT_EQ(item->GetShape(nullptr, mesh, 0.1), high > low);
    mesh.erase(mesh.begin());
    ASSERT_EQ(mesh.empty(), high <= low);
    if (mesh.empty()) continue;
    const auto [least, most] = std::ranges::minmax(mesh, {}, [](const Facet& f) { return f.a.y; });
    EXPECT_EQ(least.a.y, low);
    EXPECT_EQ(most.a.y, high);
    if (type != 7) expect_solid(mesh, 80 * (high - low), 1e-6);
  }
}

TEST(BodyMesh, IsPlacedAndMirroredByShapeAndProfile) {
  tdbToolCutter cutter(0);
  set_params(cutter, "DIAMETER=20 HEIGHT=40");
  cutter.SetPos(tdbMakePlacement({1000, 0, 0}, {}));  // the scene's business
  Transformation<double> mirror = tdbMakePlacement({0, 0, 7}, {});
  mirror(0, 0) = -1;
  cutter.SetShapePos(mirror);
  cutter.SetProfileCSys(tdbMakePlacement({}, {0, 90, 0}));
  const auto mesh = mesh_of(cutter, 0.1);
  expect_solid(mesh, 12566.4, 0.02);
  expect_box(mesh, {-40, -10, -3}, {0, 10, 17});
}

TEST(Body, WithoutShapeOrProfileLeavesWhatWasThere) {
  const auto hidden = make_body("cutter", 0);
  hidden->HideShape(true);
  const std::vector<std::shared_ptr<tdbItem>> items{
      hidden,
      make_body("cutter", 0, "HEIGHT=-1"),
      make_body("cutter", 6),
      std::make_shared<tdbCuttingTool>(new tdbToolCutter(0), nullptr, 0),
      std::make_shared<tdbFixedLink>(0),
      std::make_shared<tdbToolAngleHead>(0),
      std::make_shared<tdbToolComponent>()};
  Mesh mesh(1);
  const Contours before{points("0 0 ; 4 0 ; 8 0 ; 8 8")};
  Contours contours = before;
  for (const auto& item : items) {
    EXPECT_FALSE(item->GetShape(nullptr, mesh, 0.1));
    EXPECT_TRUE(item == hidden || !item->GetProfile(nullptr, contours, 0.1, 0));
    bool none = false;
    EXPECT_EQ(item->CreateShape(nullptr, 0.1, false, 0, &none, 0), nullptr);
    EXPECT_TRUE(none);
    EXPECT_EQ(item->CreateShape(nullptr, 0.1, false, 0, nullptr, 0), nullptr);
  }
  for (const double tolerance : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
    EXPECT_FALSE(make_body("cutter", 0)->GetShape(nullptr, mesh, tolerance));
    EXPECT_FALSE(hidden->GetProfile(nullptr, contours, tolerance, 0));
  }
  EXPECT_TRUE(tdbTool("T").GetProfile(nullptr, contours, 0.1, 0));
  EXPECT_EQ(mesh.size(), 1U);
  EXPECT_EQ(contours, before);
  EXPECT_TRUE(hidden->GetProfile(nullptr, contours, 0.1, 0));
}

// What a grown outline makes: a cylinder of 20 x 40, and a ring off the axis.
struct ExtensionCase {
  std::string_view kind;
  int type;
  std::string_view outline;
  double extension;
  double volume;
};

constexpr ExtensionCase kExtensions[] = {
    {"cutter", 5, "0 0 ; 10 0 ; 10 40 ; 0 40", 0.5, pi * 10.5 * 10.5 * 41},
    {"holder", 2, "0 0 ; 10 0 ; 10 40 ; 0 40", -0.5, pi * 9.5 * 9.5 * 39},
    {"shank", 2, "10 0 ; 10 40 ; 8 40 ; 8 0 ; 10 0", 1, pi*(121 - 49) * 42},
    {"cutter", 5, "0 0 ; 10 0 ; 10 40 ; 0 40", -11, 0},
};

TEST(CreateShape, GrowsTheOutline) {
  for (const auto& [kind, type, outline, extension, volume] : kExtensions) {
    bool empty = false;
    kinShape* shape =
        make_body(kind, type, "", outline)->CreateShape(nullptr, 0.001, true, extension, &empty, 0);
    EXPECT_EQ(empty, volume == 0);
    if (shape == nullptr) continue;
    Mesh mesh;
    shape->GetTriangles({}, mesh);
    shape->Release();
    expect_solid(mesh, volume, 1e-3);
  }
}

TEST(CreateShape, OfAComponentShowsItsMembers) {
  tdbToolComponent component(0, "extension");
  component.SetMaterial({0.1F, 0.2F, 0.3F, 0.4F, "brass.jpg"});
  component.SetPos(tdbMakePlacement({0, 0, 1000}, {}));
  auto* link = new tdbFixedLink(0);
  link->SetPos(tdbMakePlacement({0, 0, 20}, {}));
  link->AddItem(new tdbToolHolder(0));
  component.AddItem(link);
  bool empty = true;
  kinShape* shape = component.CreateShape(tdbDefaultSceneManager(), 0.01, false, 0, &empty, 0);
  ASSERT_NE(shape, nullptr);
  EXPECT_FALSE(empty);
  EXPECT_EQ(shape->GetName(), "extension");
  EXPECT_EQ(shape->GetMaterial(), component.GetMaterial());
  Mesh mesh;
  shape->SetInches(true);
  shape->GetTriangles(tdbMakePlacement({0, 0, 5}, {}), mesh);
  shape->Release();
  expect_solid(mesh, pi * 625 * 80 * std::pow(25.4, 3), 0.001);
  expect_box(mesh, {-635, -635, 513}, {635, 635, 2545});
  component.HideShape(true);
  EXPECT_FALSE(component.GetShape(nullptr, mesh, 0.01));
}

// A drill of 20 x 40 in a joined shank of 10 x 30 in a holder 60 above the shank, all of it 100
// along X.
std::unique_ptr<tdbTool> make_tool() {
  auto tool = std::make_unique<tdbTool>("T");
  auto* cutting = new tdbCuttingTool(new tdbToolCutter(0), new tdbToolShank(0), 0);
  set_params(*cutting->GetCutter(), "DIAMETER=20 HEIGHT=40");
  set_params(*cutting->GetShank(), "DIAMETER=10 HEIGHT=30");
  auto* holder = new tdbToolHolder(0);
  holder->SetPos(tdbMakePlacement({0, 0, 60}, {}));
  cutting->GetShank()->AddItem(holder);
  cutting->SetPos(tdbMakePlacement({100, 0, 0}, {}));
  tool->AddItem(cutting);
  return tool;
}

constexpr double kPartsVolume = pi * (100 * 40 + 25 * 30 + 625 * 80);

TEST(AssemblyMesh, PlacesEveryMemberThatIsNotHidden) {
  const auto tool = make_tool();
  const tdbTool before = *tool;
  Mesh mesh;
  EXPECT_FALSE(tool->GetShape(nullptr, mesh, 0.01));
  ASSERT_TRUE(tdbProfile::GetAssemblyShape(*tool, nullptr, mesh, 0.01));
  EXPECT_TRUE(*tool == before);
  expect_solid(mesh, kPartsVolume, 0.001);
  // The shank stands on the cutter, the holder 60 above its foot.
  expect_box(mesh, {75, -25, 0}, {125, 25, 40 + 60 + 80});
  mesh.clear();
  tool->GetShank(0)->HideShape(true);
  ASSERT_TRUE(tdbProfile::GetAssemblyShape(*tool, nullptr, mesh, 0.01));
  expect_solid(mesh, kPartsVolume - pi * 750, 0.001);
  tool->GetItem(0)->HideShape(true);  // and with it all below
  EXPECT_FALSE(tdbProfile::GetAssemblyShape(*tool, nullptr, mesh, 0.01));
}

// The cylinder of a tool cut open; a body beside the axis stays whole.
TEST(SectionMesh, CutsWhatTurnsAboutTheAxis) {
  tdbTool tool("T");
  const auto add = [&](tdbItem* body, const Transformation<double>& position) {
    set_params(*body, "DIAMETER=20 HEIGHT=40");
    body->SetPos(position);
    tool.AddItem(body);
  };
  add(new tdbToolCutter(0), tdbMakePlacement({0, 0, 5}, {30, 0, 0}));
  add(new tdbToolHolder(0), tdbMakePlacement({100, 0, 0}, {}));
  const double whole = pi * 4000;
  const auto section = [&](double volume) {
    Mesh mesh;
    EXPECT_TRUE(tdbProfile::GetSectionShape(tool, nullptr, mesh, 0.001));
    expect_solid(mesh, volume, 0.001);
    return mesh;
  };
  section(2 * whole);
  tool.EnableSection(true);
  tool.SetSectionStartAngle(90);
  tool.SetSectionSpanAngle(90);
  auto mesh = section(1.25 * whole);
  std::erase_if(mesh, [](const Facet& f) { return f.a.x > 50; });
  expect_box(mesh, {-10, 0, 5}, {0, 10, 45});
}

}  // namespace
}  // namespace tooldb::test

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "geom/revolve.h"
#include "tests/geom/mesh_check.h"
#include "tests/geom/row_name.h"
#include "tests/profile/bodies.h"
#include "tests/profile/host_scene.h"
#include "tooldb/placement.h"
#include "tooldb/profile.h"
#include "tooldb/profile/body_types.h"
#include "tooldb/tool.h"

namespace tooldb::test {
namespace {

using std::numbers::pi;

std::vector<Facet> mesh_of(tdbItem& item, double tolerance) {
  std::vector<Facet> mesh;
  EXPECT_TRUE(item.GetShape(nullptr, mesh, tolerance));
  return mesh;
}

// A mesh lies inside the true body, and is smaller by no more than its tolerance makes it.
void expect_solid(const std::vector<Facet>& mesh, double exact_volume, double slack) {
  const MeshCheck check = check_mesh(mesh);
  EXPECT_EQ(check.open_edges, 0U);
  EXPECT_EQ(check.euler, 2);
  EXPECT_LT(check.worst_normal, 1e-6);
  EXPECT_LE(check.volume, exact_volume * (1 + 1e-5));
  EXPECT_GE(check.volume, exact_volume * (1 - slack));
}

TEST(BodyMesh, OfEveryTurnedKindIsSolid) {
  const auto expect_turned = [](std::string_view kind, std::span<const BodyType> types) {
    for (const BodyType& type : types) {
      const auto item = make_body(kind, type.code);
      if (kind == "cutter" && type.code == 7) continue;
      SCOPED_TRACE(std::string(kind) + std::to_string(type.code));
      ASSERT_TRUE(build(*item));
      const auto outline = parse_contour(item->GetProfileXml());
      for (const double tolerance : {0.5, 0.01}) {
        expect_solid(mesh_of(*item, tolerance), volume_of_revolution(*outline), tolerance / 2);
      }
    }
  };
  expect_turned("cutter", cutter_types());
  expect_turned("shank", shank_types());
  expect_turned("holder", holder_types());
}

TEST(BodyMesh, OfEveryInsertIsSolid) {
  for (int shape = 17; shape <= 25; ++shape) {
    SCOPED_TRACE(shape);
    auto* cutter = new tdbToolCutter(7);
    const tdbCuttingTool tool(cutter, nullptr, shape);
    ASSERT_TRUE(cutter->BuildProfile(0));
    const auto outline = *parse_contour(cutter->GetProfileXml());
    const double exact = shape == 25 ? volume_of_revolution(outline) : 4.76 * signed_area(outline);
    expect_solid(mesh_of(*cutter, 0.01), exact, 0.005);
  }
}

TEST(BodyMesh, HasTheFacetsOfItsTolerance) {
  tdbToolCutter flat(0);
  set_params(flat, "DIAMETER=20 HEIGHT=40");
  const auto mesh = mesh_of(flat, 0.1);
  // Half of the tolerance goes to the chords round the axis: 32 of them.
  EXPECT_EQ(mesh.size(), 128U);
  EXPECT_NEAR(signed_volume(mesh), 12566.4 * 32 / (2 * pi) * std::sin(2 * pi / 32), 0.1);
}

// Where extruded bodies lie across the plane that they are drawn in.
struct ThicknessCase {
  std::string_view name;
  std::string_view kind;
  int type;
  std::string_view params;
  double low;
  double high;  // not above low: no mesh
};

constexpr ThicknessCase kThicknesses[] = {
    {"Insert", "cutter", 7, "", -4.76, 0},
    {"InsertHeight", "cutter", 7, "HEIGHT=3", -3, 0},
    {"InsertSet", "cutter", 7, "EXTRUDED_HMIN=-2 EXTRUDED_HMAX=1.5", -2, 1.5},
    {"Turning", "cutter", 8, "", -5, 0},
    {"Shank", "shank", 5, "", -12.5, 12.5},
    {"Holder", "holder", 4, "EXTRUDED_HMAX=20", -12.5, 20},
    {"Flat", "holder", 4, "EXTRUDED_HMAX=-12.5", 0, 0},
    {"Wrong", "shank", 5, "EXTRUDED_HMIN=a", 0, 0},
};

class ExtrudedBody : public testing::TestWithParam<ThicknessCase> {};
INSTANTIATE_TEST_SUITE_P(Bodies, ExtrudedBody, testing::ValuesIn(kThicknesses),
                         row_name<ThicknessCase>);

TEST_P(ExtrudedBody, LiesBetweenItsHeights) {
  const auto& [name, kind, type, params, low, high] = GetParam();
  const auto item = make_body(kind, type);
  item->SetProfileXml(contour_of("0 0 ; 4 0 ; 4 20 ; 0 20").c_str());
  set_params(*item, params);
  std::vector<Facet> mesh(1);
  ASSERT_EQ(item->GetShape(nullptr, mesh, 0.1), high > low);
  mesh.erase(mesh.begin());
  if (high <= low) {
    EXPECT_TRUE(mesh.empty());
    return;
  }
  const auto [least, most] = std::ranges::minmax(mesh, {}, [](const Facet& f) { return f.a.y; });
  EXPECT_EQ(least.a.y, low);
  EXPECT_EQ(most.a.y, high);
  if (type != 7) expect_solid(mesh, 80 * (high - low), 1e-6);
}

TEST(BodyMesh, IsPlacedByShapeAndProfile) {
  tdbToolCutter cutter(0);
  set_params(cutter, "DIAMETER=20 HEIGHT=40");
  cutter.SetPos(tdbMakePlacement({1000, 0, 0}, {}));  // the scene's business
  cutter.SetShapePos(tdbMakePlacement({0, 0, 7}, {}));
  cutter.SetProfileCSys(tdbMakePlacement({}, {0, 90, 0}));
  const auto mesh = mesh_of(cutter, 0.1);
  expect_solid(mesh, 12566.4, 0.02);
  const auto [least, most] = std::ranges::minmax(mesh, {}, [](const Facet& f) { return f.a.x; });
  EXPECT_NEAR(least.a.x, 0, 1e-9);
  EXPECT_NEAR(most.a.x, 40, 1e-9);
  const auto [low, high] = std::ranges::minmax(mesh, {}, [](const Facet& f) { return f.a.z; });
  EXPECT_NEAR(low.a.z, -3, 1e-9);
  EXPECT_NEAR(high.a.z, 17, 1e-9);
}

TEST(BodyMesh, MirroredFacesOutwards) {
  Transformation<double> mirror;
  mirror(2, 2) = -1;
  for (const int type : {0, 7}) {
    tdbToolCutter cutter(type);
    const double volume = signed_volume(mesh_of(cutter, 0.1));
    cutter.SetShapePos(mirror);
    const MeshCheck check = check_mesh(mesh_of(cutter, 0.1));
    EXPECT_NEAR(check.volume, volume, 1e-9 * volume);
    EXPECT_LT(check.worst_normal, 1e-9);
  }
}

TEST(BodyMesh, IsNoneWhenHiddenRefusedOrWithoutShape) {
  tdbToolCutter hidden(0);
  hidden.HideShape(true);
  tdbToolCutter refused(0);
  refused.SetParam("HEIGHT", "-1");
  tdbToolCutter model(6);
  tdbCuttingTool tool(new tdbToolCutter(0), nullptr, 0);
  tdbFixedLink link(0);
  tdbToolAngleHead head(0);
  tdbToolComponent empty;
  HostScene scene;
  for (tdbItem* item :
       std::initializer_list<tdbItem*>{&hidden, &refused, &model, &tool, &link, &head, &empty}) {
    std::vector<Facet> mesh;
    EXPECT_FALSE(item->GetShape(&scene, mesh, 0.1));
    EXPECT_TRUE(mesh.empty());
    bool none = false;
    EXPECT_EQ(item->CreateShape(&scene, 0.1, false, 0, &none, 0), nullptr);
    EXPECT_TRUE(none);
    EXPECT_EQ(item->CreateShape(&scene, 0.1, false, 0, nullptr, 0), nullptr);
  }
  EXPECT_EQ(scene.live_shapes, 0);
  std::vector<std::vector<Point2d<double>>> contours;
  EXPECT_TRUE(hidden.GetProfile(nullptr, contours, 0.1, 0));
  std::vector<Facet> mesh;
  tdbToolCutter shown(0);
  for (const double tolerance : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
    EXPECT_FALSE(shown.GetShape(nullptr, mesh, tolerance));
  }
}

TEST(BodyMesh, OfTheFinestToleranceStaysBounded) {
  tdbToolCutter ball(1);
  EXPECT_LT(mesh_of(ball, 1e-9).size(), 20'000'000U);
}

// What a grown outline makes: a cylinder of 20 x 40, and a ring off the axis.
struct ExtensionCase {
  std::string_view outline;
  double extension;
  double volume;
};

constexpr ExtensionCase kExtensions[] = {
    {"0 0 ; 10 0 ; 10 40 ; 0 40", 0.5, pi * 10.5 * 10.5 * 41},
    {"0 0 ; 10 0 ; 10 40 ; 0 40", -0.5, pi * 9.5 * 9.5 * 39},
    {"10 0 ; 10 40 ; 8 40 ; 8 0 ; 10 0", 1, pi*(121 - 49) * 42},
    {"0 0 ; 10 0 ; 10 40 ; 0 40", -11, 0},
};

TEST(CreateShape, GrowsTheOutline) {
  for (const auto& [outline, extension, volume] : kExtensions) {
    tdbToolCutter cutter(5);
    cutter.SetProfileXml(contour_of(outline).c_str());
    HostScene scene;
    bool empty = false;
    kinShape* shape = cutter.CreateShape(&scene, 0.001, true, extension, &empty, 0);
    EXPECT_EQ(empty, volume == 0);
    if (shape == nullptr) continue;
    const MeshCheck check = check_mesh(dynamic_cast<HostScene::Shape*>(shape)->Triangles());
    EXPECT_EQ(check.open_edges, 0U);
    EXPECT_NEAR(check.volume, volume, 1e-3 * volume);
    shape->Release();
  }
}

TEST(CreateShape, CarriesNameAndMaterial) {
  for (kinSceneManager* manager :
       {static_cast<kinSceneManager*>(nullptr), tdbDefaultSceneManager()}) {
    tdbToolHolder holder(0);
    holder.SetName("chuck");
    holder.SetMaterial({0.1F, 0.2F, 0.3F, 0.4F, "brass.jpg"});
    bool empty = true;
    kinShape* shape = holder.CreateShape(manager, 0.1, false, 0, &empty, 0);
    ASSERT_NE(shape, nullptr);
    EXPECT_FALSE(empty);
    EXPECT_EQ(shape->GetName(), "chuck");
    EXPECT_EQ(shape->GetMaterial(), holder.GetMaterial());
    std::vector<Facet> mesh;
    shape->SetInches(true);
    shape->GetTriangles(tdbMakePlacement({0, 0, 5}, {}), mesh);
    shape->Release();
    const MeshCheck check = check_mesh(mesh);
    EXPECT_EQ(check.open_edges, 0U);
    EXPECT_NEAR(check.volume, pi * 625 * 80 * std::pow(25.4, 3), 0.02 * check.volume);
  }
}

// A drill of 20 x 40 in a joined shank of 10 x 30 in a holder 60 above the shank, all of it 100
// along X and turned about Z.
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

struct Box {
  Vec3 low{1e9, 1e9, 1e9};
  Vec3 high{-1e9, -1e9, -1e9};
};

Box box_of(const std::vector<Facet>& mesh) {
  Box box;
  for (const Facet& f : mesh) {
    for (const Vec3& p : {f.a, f.b, f.c}) {
      box.low = {std::min(box.low.x, p.x), std::min(box.low.y, p.y), std::min(box.low.z, p.z)};
      box.high = {std::max(box.high.x, p.x), std::max(box.high.y, p.y), std::max(box.high.z, p.z)};
    }
  }
  return box;
}

constexpr double kPartsVolume = pi * (100 * 40 + 25 * 30 + 625 * 80);

TEST(AssemblyMesh, PlacesEveryMember) {
  const auto tool = make_tool();
  const tdbTool before = *tool;
  std::vector<Facet> mesh;
  EXPECT_FALSE(tool->GetShape(nullptr, mesh, 0.01));
  ASSERT_TRUE(tdbProfile::GetAssemblyShape(*tool, nullptr, mesh, 0.01));
  EXPECT_TRUE(*tool == before);
  const MeshCheck check = check_mesh(mesh);
  EXPECT_EQ(check.open_edges, 0U);
  EXPECT_NEAR(check.volume, kPartsVolume, 0.001 * kPartsVolume);
  const auto [low, high] = box_of(mesh);
  EXPECT_NEAR(low.x, 75, 1e-9);
  EXPECT_NEAR(high.x, 125, 1e-9);
  EXPECT_NEAR(low.z, 0, 1e-9);
  EXPECT_NEAR(high.z, 40 + 60 + 80, 1e-9);  // shank on the cutter, holder 60 above its foot
}

TEST(AssemblyMesh, AgreesWithUpdatedPlacements) {
  const auto tool = make_tool();
  std::vector<Facet> assembly;
  ASSERT_TRUE(tdbProfile::GetAssemblyShape(*tool, nullptr, assembly, 0.01));
  tool->Update();
  std::vector<Facet> parts;
  for (tdbItem* item :
       std::initializer_list<tdbItem*>{tool->GetCutter(0), tool->GetShank(0), tool->GetHolder(0)}) {
    auto mesh = mesh_of(*item, 0.01);
    transform_mesh(mesh, item->GetAbsPos());
    parts.insert(parts.end(), mesh.begin(), mesh.end());
  }
  ASSERT_EQ(parts.size(), assembly.size());
  for (std::size_t i = 0; i < parts.size(); ++i) {
    EXPECT_LT(length(parts[i].a - assembly[i].a), 1e-9);
  }
}

TEST(AssemblyMesh, LeavesHiddenMembersOut) {
  const auto tool = make_tool();
  tool->GetShank(0)->HideShape(true);
  std::vector<Facet> mesh;
  ASSERT_TRUE(tdbProfile::GetAssemblyShape(*tool, nullptr, mesh, 0.01));
  EXPECT_NEAR(signed_volume(mesh), kPartsVolume - pi * 750, 0.001 * kPartsVolume);
  tool->GetItem(0)->HideShape(true);  // and with it all below
  EXPECT_FALSE(tdbProfile::GetAssemblyShape(*tool, nullptr, mesh, 0.01));
}

TEST(ComponentMesh, IsThatOfItsMembers) {
  tdbToolComponent component(0, "extension");
  auto* link = new tdbFixedLink(0);
  link->SetPos(tdbMakePlacement({0, 0, 20}, {}));
  link->AddItem(new tdbToolHolder(0));
  component.AddItem(link);
  component.SetPos(tdbMakePlacement({0, 0, 1000}, {}));
  const auto mesh = mesh_of(component, 0.01);
  expect_solid(mesh, pi * 625 * 80, 0.001);
  EXPECT_NEAR(box_of(mesh).low.z, 20, 1e-9);
  HostScene scene;
  kinShape* shape = component.CreateShape(&scene, 0.01, false, 0, nullptr, 0);
  ASSERT_NE(shape, nullptr);
  EXPECT_EQ(shape->GetName(), "extension");
  shape->Release();
  component.HideShape(true);
  std::vector<Facet> none;
  EXPECT_FALSE(component.GetShape(nullptr, none, 0.01));
}

// The cylinder of a tool cut open; a body beside the axis stays whole.
TEST(SectionMesh, CutsWhatTurnsAboutTheAxis) {
  tdbTool tool("T");
  auto* cutter = new tdbToolCutter(0);
  set_params(*cutter, "DIAMETER=20 HEIGHT=40");
  cutter->SetPos(tdbMakePlacement({0, 0, 5}, {30, 0, 0}));
  tool.AddItem(cutter);
  auto* beside = new tdbToolHolder(0);
  set_params(*beside, "DIAMETER=20 HEIGHT=40");
  beside->SetPos(tdbMakePlacement({100, 0, 0}, {}));
  tool.AddItem(beside);
  const double whole = pi * 4000;
  const auto section = [&] {
    std::vector<Facet> mesh;
    EXPECT_TRUE(tdbProfile::GetSectionShape(tool, nullptr, mesh, 0.001));
    EXPECT_EQ(check_mesh(mesh).open_edges, 0U);
    return mesh;
  };
  EXPECT_NEAR(signed_volume(section()), 2 * whole, 0.002 * whole);
  tool.EnableSection(true);
  tool.SetSectionStartAngle(90);
  tool.SetSectionSpanAngle(90);
  auto mesh = section();
  EXPECT_NEAR(signed_volume(mesh), 1.25 * whole, 0.002 * whole);
  std::erase_if(mesh, [](const Facet& f) { return f.a.x > 50; });
  const auto [low, high] = box_of(mesh);
  EXPECT_NEAR(low.x, -10, 1e-9);
  EXPECT_NEAR(high.x, 0, 1e-9);
  EXPECT_NEAR(low.y, 0, 1e-9);
  EXPECT_NEAR(high.y, 10, 1e-9);
  EXPECT_NEAR(low.z, 5, 1e-9);
}

}  // namespace
}  // namespace tooldb::test

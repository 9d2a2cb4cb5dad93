#include "geom/turning_profile.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geom/loop_builder.h"
#include "geom/polyline.h"
#include "tests/geom/meshes.h"
#include "tests/geom/points.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

Mesh insert(double y_min, double y_max) {
  return extruded({{0, 0}, {8, 9}, {0, 18}, {-8, 9}}, y_min, y_max);  // area 144
}

Mesh box(double x0, double z0, double x1, double z1) {
  return extruded({{x0, z0}, {x1, z0}, {x1, z1}, {x0, z1}}, -1, 1);
}

// A square frame, its inner square 9 in size.
Mesh frame() {
  return extruded(points("0 0 ; 9 0 ; 9 9 ; 0 9 ; 0 0 ; 3 3 ; 3 6 ; 6 6 ; 6 3 ; 3 3"), -1, 1);
}

Mesh flipped_every_third(Mesh mesh) {
  for (std::size_t i = 0; i < mesh.size(); i += 3) std::swap(mesh[i].b, mesh[i].c);
  return mesh;
}

Mesh without_normals(Mesh mesh) {
  for (Facet& f : mesh) f.n = {};
  return mesh;
}

struct SectionCase {
  std::string_view name;
  Mesh mesh;
  std::vector<double> areas;
  TurningSection how = {};
};
const SectionCase kSections[] = {
    {"ThroughABody", insert(-2, 2), {144}},
    {"RakeFaceInThePlaneBodyBelow", insert(-4.76, 0), {144}},
    {"BodyAboveThePlaneNeedsTheSecondPass", insert(0, 3), {144}},
    {"OnePassSeesNothingAbove", insert(0, 3), {}, {.passes = 1}},
    {"FaceNearlyInThePlane", insert(-4.76, -0.009), {144}},
    {"FaceBesideThePlane", insert(-4.76, -0.011), {}},
    {"SliverBodiesAcrossThePlane", shaken(insert(-4.76, 0), 0.004), {144}},
    {"Cylinder", revolved({{5, 0}, {5, 30}}), {300}},
    {"SideBySideLargestFirst", both(box(0, 0, 2, 2), box(10, 0, 15, 5)), {25, 4}},
    {"OverlappingBodiesAreOne", both(box(0, 0, 2, 2), box(1, 0, 5, 2)), {10}},
    {"OverlappingApart", both(box(0, 0, 2, 2), box(1, 0, 5, 2)), {8, 4}, {.unite = false}},
    {"BoreIsLeftOut", revolved(points("3 0 ; 5 0 ; 5 9 ; 3 9 ; 3 0")), {18, 18}},
    {"InnerContourIsFilled", frame(), {81}},
    {"InnerContourIsKept", frame(), {81, -9}, {.holes = true}},
    {"FacetsOfEitherWinding", flipped_every_third(insert(-2, 2)), {144}},
    {"CornersThatDoNotMeet", shaken(insert(-2, 2), 0.002), {144}},
    {"FacetsWithoutNormals", without_normals(insert(-2, 2)), {}},
    {"Nothing", {}, {}},
};
class TurningProfile : public testing::TestWithParam<SectionCase> {};
INSTANTIATE_TEST_SUITE_P(Meshes, TurningProfile, testing::ValuesIn(kSections),
                         row_name<SectionCase>);

TEST_P(TurningProfile, AppendsClosedContours) {
  const auto& [name, mesh, areas, how] = GetParam();
  VexaTurningProfile profile(0.01);
  profile.Add(mesh);
  std::vector<Polyline> contours = {{{1, 1}}};
  EXPECT_EQ(profile.Compute(contours, how), !areas.empty());
  ASSERT_EQ(contours.size(), areas.size() + 1);
  EXPECT_EQ(contours[0], points("1 1"));
  for (std::size_t i = 0; i < areas.size(); ++i) {
    EXPECT_NEAR(signed_area(contours[i + 1]), areas[i], 0.1);
    EXPECT_EQ(contours[i + 1].front(), contours[i + 1].back());
  }
}

struct LoopCase {
  std::string_view name;
  std::string_view segments;
  std::string_view loops;
  LoopJoining joining = {};
};
constexpr LoopCase kLoops[] = {
    {"InAnyOrder", "0 0 ; 4 0 | 0 4 ; 0 0 | 4 0 ; 0 4", "0 0 ; 4 0 ; 0 4"},
    {"TwoThatMeetInAPoint",
     "0 0 ; 4 0 | 4 0 ; 0 4 | 0 4 ; 0 0 | 0 0 ; -4 0 | -4 0 ; 0 -4 | 0 -4 ; 0 0",
     "0 0 ; 4 0 ; 0 4 | 0 0 ; -4 0 ; 0 -4"},
    {"SomeTheOtherWayRound", "0 0 ; 4 0 | 0 4 ; 4 0 | 0 4 ; 0 0", "0 0 ; 4 0 ; 0 4"},
    {"GapsKeepTheirCoordinates", "0 0 ; 4 0 | 4.5 0 ; 0 4 | 0 4.25 ; 0 0",
     "0 0 ; 4 0 ; 4.5 0 ; 0 4 ; 0 4.25"},
    {"TheShortestGapFirst", "0 0 ; 4 0 | 4.5 0 ; 0 4 | 0 4 ; 0 0 | 4.6 0 ; 9 0", ""},
    {"GapsBeyondTheLimitStayOpen", "0 0 ; 4 0 | 4 0 ; 0 4", "", {0.01, 3.9, 9}},
    {"TwoSidesOfATriangleClose", "0 0 ; 4 0 | 4 0 ; 0 4", "0 0 ; 4 0 ; 0 4", {0.01, 4, 9}},
    {"StepsAreCounted", "0 0 ; 4 0 | 4.5 0 ; 0 4 | 0 4.25 ; 0 0", "", {0.01, 1, 1}},
    {"NearEndsAreNoSteps",
     "0 0 ; 4 0 | 4.0001 0 ; 0 4 | 0 4 ; 0 0",
     "0 0 ; 4 0 ; 4.0001 0 ; 0 4",
     {0.01, 1, 0}},
    {"ALoneSegmentIsNoLoop", "0 0 ; 0.5 0", ""},
    {"Nothing", "", ""},
};
class LoopBuilder : public testing::TestWithParam<LoopCase> {};
INSTANTIATE_TEST_SUITE_P(Segments, LoopBuilder, testing::ValuesIn(kLoops), row_name<LoopCase>);

TEST_P(LoopBuilder, JoinsSegments) {
  std::vector<LineSegment> segments;
  for (const Polyline& ends : point_lists(GetParam().segments)) {
    segments.push_back({ends.at(0), ends.at(1)});
  }
  EXPECT_EQ(build_loops(segments, GetParam().joining), point_lists(GetParam().loops));
}

}  // namespace
}  // namespace tooldb

#include "geom/turning_profile.h"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <cmath>
#include <cstring>
#include <random>

#include "geom/extrude.h"
#include "geom/polyline.h"
#include "geom/revolve.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

using Mesh = std::vector<Facet>;

const Polyline kInsert = {{0, 0}, {8, 9}, {0, 18}, {-8, 9}};  // area 144
constexpr TurningSection kUsual{0.01, 0.002, 1, 5000, 2, true, false};

Mesh extruded(const Polyline& outline, double y_min, double y_max) {
  Mesh mesh;
  EXPECT_TRUE(extrude(outline, y_min, y_max, mesh));
  return mesh;
}

Polyline box(double x0, double z0, double x1, double z1) {
  return {{x0, z0}, {x1, z0}, {x1, z1}, {x0, z1}};
}

Mesh both(Mesh a, const Mesh& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

Mesh revolved(const Polyline& outline) {
  Mesh mesh;
  EXPECT_TRUE(revolve(outline, {0.01}, mesh));
  return mesh;
}

Mesh flipped_every_third(Mesh mesh) {
  for (std::size_t i = 0; i < mesh.size(); i += 3) std::swap(mesh[i].b, mesh[i].c);
  return mesh;
}

Mesh shaken(Mesh mesh, double size) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> u(-size, size);
  for (Facet& f : mesh) {
    for (Vec3* p : {&f.a, &f.b, &f.c}) *p = *p + Vec3{u(random), u(random), u(random)};
  }
  return mesh;
}

Mesh without_normals(Mesh mesh) {
  for (Facet& f : mesh) f.n = {};
  return mesh;
}

struct SectionCase {
  const char* name;
  Mesh mesh;
  std::vector<double> areas;
  TurningSection how = kUsual;
};
const SectionCase kSections[] = {
    {"ThroughABody", extruded(kInsert, -2, 2), {144}},
    {"RakeFaceInThePlaneBodyBelow", extruded(kInsert, -4.76, 0), {144}},
    {"BodyAboveThePlaneNeedsTheSecondPass", extruded(kInsert, 0, 3), {144}},
    {"OnePassSeesNothingAbove", extruded(kInsert, 0, 3), {}, {0.01, 0.002, 1, 5000, 1}},
    {"FaceNearlyInThePlane", extruded(kInsert, -4.76, -0.009), {144}},
    {"FaceBesideThePlane", extruded(kInsert, -4.76, -0.011), {}},
    {"SliverBodiesAcrossThePlane", shaken(extruded(kInsert, -4.76, 0), 0.004), {144}},
    {"Cylinder", revolved({{5, 0}, {5, 30}}), {300}},
    {"BodiesSideBySideLargestFirst",
     both(extruded(box(0, 0, 2, 2), -1, 1), extruded(box(10, 0, 15, 5), -1, 1)),
     {25, 4}},
    {"OverlappingBodiesAreOne",
     both(extruded(box(0, 0, 2, 2), -1, 1), extruded(box(1, 0, 5, 2), -1, 1)),
     {10}},
    {"OverlappingBodiesApart",
     both(extruded(box(0, 0, 2, 2), -1, 1), extruded(box(1, 0, 5, 2), -1, 1)),
     {8, 4},
     {0.01, 0.002, 1, 5000, 2, false, false}},
    {"BoreIsLeftOut", revolved({{3, 0}, {5, 0}, {5, 9}, {3, 9}, {3, 0}}), {18, 18}},
    {"InnerContourIsFilled",
     extruded({{0, 0}, {9, 0}, {9, 9}, {0, 9}, {0, 0}, {3, 3}, {3, 6}, {6, 6}, {6, 3}, {3, 3}}, -1,
              1),
     {81}},
    {"InnerContourIsKept",
     extruded({{0, 0}, {9, 0}, {9, 9}, {0, 9}, {0, 0}, {3, 3}, {3, 6}, {6, 6}, {6, 3}, {3, 3}}, -1,
              1),
     {81, -9},
     {0.01, 0.002, 1, 5000, 2, true, true}},
    {"FacetsOfEitherWinding", flipped_every_third(extruded(kInsert, -2, 2)), {144}},
    {"CornersThatDoNotMeet", shaken(extruded(kInsert, -2, 2), 0.002), {144}},
    {"FacetsWithoutNormals", without_normals(extruded(kInsert, -2, 2)), {}},
    {"Nothing", {}, {}},
};
class TurningProfile : public testing::TestWithParam<SectionCase> {};
TEST_P(TurningProfile, GivesClosedContours) {
  VexaTurningProfile profile(0.01);
  profile.Add(GetParam().mesh);
  std::vector<Polyline> contours = {{{1, 1}}};
  EXPECT_EQ(profile.Compute(contours, GetParam().how), !GetParam().areas.empty());
  ASSERT_EQ(contours.size(), GetParam().areas.size() + 1);
  EXPECT_EQ(contours[0], (Polyline{{1, 1}}));
  for (std::size_t i = 0; i < GetParam().areas.size(); ++i) {
    const Polyline& contour = contours[i + 1];
    EXPECT_NEAR(signed_area(contour), GetParam().areas[i], 0.1);
    EXPECT_EQ(contour.front(), contour.back());
  }
}
INSTANTIATE_TEST_SUITE_P(Meshes, TurningProfile, testing::ValuesIn(kSections),
                         row_name<SectionCase>);

struct LoopCase {
  const char* name;
  std::vector<LineSegment> segments;
  LoopJoining joining;
  std::vector<Polyline> loops;
};
const LoopCase kLoops[] = {
    {"InAnyOrder",
     {{{0, 0}, {4, 0}}, {{0, 4}, {0, 0}}, {{4, 0}, {0, 4}}},
     {},
     {{{0, 0}, {4, 0}, {0, 4}}}},
    {"TwoThatMeetInAPoint",
     {{{0, 0}, {4, 0}},
      {{4, 0}, {0, 4}},
      {{0, 4}, {0, 0}},
      {{0, 0}, {-4, 0}},
      {{-4, 0}, {0, -4}},
      {{0, -4}, {0, 0}}},
     {},
     {{{0, 0}, {4, 0}, {0, 4}}, {{0, 0}, {-4, 0}, {0, -4}}}},
    {"SomeTheOtherWayRound",
     {{{0, 0}, {4, 0}}, {{0, 4}, {4, 0}}, {{0, 4}, {0, 0}}},
     {},
     {{{0, 0}, {4, 0}, {0, 4}}}},
    {"GapsKeepTheirCoordinates",
     {{{0, 0}, {4, 0}}, {{4.5, 0}, {0, 4}}, {{0, 4.25}, {0, 0}}},
     {},
     {{{0, 0}, {4, 0}, {4.5, 0}, {0, 4}, {0, 4.25}}}},
    {"TheShortestGapFirst",
     {{{0, 0}, {4, 0}}, {{4.5, 0}, {0, 4}}, {{0, 4}, {0, 0}}, {{4.6, 0}, {9, 0}}},
     {},
     {}},
    {"GapsBeyondTheLimitStayOpen", {{{0, 0}, {4, 0}}, {{4, 0}, {0, 4}}}, {0.01, 3.9, 9}, {}},
    {"TwoSidesOfATriangleClose",
     {{{0, 0}, {4, 0}}, {{4, 0}, {0, 4}}},
     {0.01, 4, 9},
     {{{0, 0}, {4, 0}, {0, 4}}}},
    {"StepsAreCounted",
     {{{0, 0}, {4, 0}}, {{4.5, 0}, {0, 4}}, {{0, 4.25}, {0, 0}}},
     {0.01, 1, 1},
     {}},
    {"NearEndsAreNoSteps",
     {{{0, 0}, {4, 0}}, {{4.0001, 0}, {0, 4}}, {{0, 4}, {0, 0}}},
     {0.01, 1, 0},
     {{{0, 0}, {4, 0}, {4.0001, 0}, {0, 4}}}},
    {"ALoneSegmentIsNoLoop", {{{0, 0}, {0.5, 0}}}, {}, {}},
    {"Nothing", {}, {}, {}},
};
class LoopBuilder : public testing::TestWithParam<LoopCase> {};
TEST_P(LoopBuilder, JoinsSegments) {
  EXPECT_EQ(build_loops(GetParam().segments, GetParam().joining), GetParam().loops);
}
INSTANTIATE_TEST_SUITE_P(Segments, LoopBuilder, testing::ValuesIn(kLoops), row_name<LoopCase>);

TEST(TurningProfileThreads, OneAndManyGiveTheSameBytes) {
  Polyline wave;
  for (int i = 0; i <= 400; ++i) wave.push_back({20 + std::sin(i * 0.1), i * 0.1});
  VexaTurningProfile profile(0.01);
  profile.Add(shaken(revolved(wave), 1e-4));
  std::vector<Polyline> many;
  EXPECT_TRUE(profile.Compute(many, kUsual));
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  std::vector<Polyline> single;
  EXPECT_TRUE(profile.Compute(single, kUsual));
  EXPECT_EQ(single, many);
}

}  // namespace
}  // namespace tooldb

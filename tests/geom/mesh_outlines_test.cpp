#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "geom/euler_angles.h"
#include "geom/loop_builder.h"
#include "geom/polyline.h"
#include "geom/silhouette.h"
#include "geom/stl.h"
#include "geom/transform.h"
#include "geom/turning_profile.h"
#include "tests/geom/meshes.h"
#include "tests/geom/points.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

// The definition, edge by edge: the largest distance from the axis at height z, or -1.
double true_radius(const Mesh& mesh, double z) {
  double best = -1;
  for (const Facet& f : mesh) {
    for (const auto& [p, q] : {std::pair(f.a, f.b), std::pair(f.b, f.c), std::pair(f.c, f.a)}) {
      if (std::abs(q.z - p.z) < 1e-9 || (p.z - z) * (q.z - z) > 0) continue;
      const Vec3 at = p + ((z - p.z) / (q.z - p.z)) * (q - p);
      best = std::max(best, std::hypot(at.x, at.y));
    }
  }
  return best;
}

// The largest x of the outline at height z.
double outline_radius(const Polyline& line, double z) {
  double best = -1;
  for (std::size_t i = 1; i < line.size(); ++i) {
    const auto [a, b] = std::pair(line[i - 1], line[i]);
    if ((a.y - z) * (b.y - z) > 0) continue;
    const double x = a.x + (b.x - a.x) * (z - a.y) / (b.y - a.y);
    best = std::max(best, a.y == b.y ? std::max(a.x, b.x) : x);
  }
  return best;
}

Mesh box(Vec3 low, Vec3 high) {
  return extruded({{low.x, low.z}, {high.x, low.z}, {high.x, high.z}, {low.x, high.z}}, low.y,
                  high.y);
}

Mesh placed(Mesh mesh, const Placement& placement) {
  transform_mesh(mesh, placement);
  return mesh;
}

// A cube of side 10 whose space diagonal stands on the origin.
Mesh cube_on_a_corner() {
  const double tilt = -std::atan(std::sqrt(2)) * 180 / std::acos(-1);
  return placed(box({0, 0, 0}, {10, 10, 10}),
                join_zyx({0, tilt, 0}, {}) * join_zyx({-45, 0, 0}, {}));
}

Mesh noisy_cylinder() {
  return shaken(revolved(points("5 0 ; 5 1 ; 5 2 ; 5 3 ; 5 20 ; 8 20 ; 8 30"), 1e-4), 1e-6);
}

struct MeshCase {
  std::string_view name;
  Mesh mesh;
};
const MeshCase kMeshes[] = {
    {"CubeOnACorner", cube_on_a_corner()},
    {"BoxOffTheAxis", box({30, 10, 0}, {31, 50, 20})},
    {"TiltedBox", placed(box({-5, -5, 0}, {5, 5, 20}), join_zyx({10, 40, 25}, {3, -2, 1}))},
    {"FlatBox", placed(box({-50, -5, 0}, {50, 5, 0.5}), join_zyx({10, 89, 25}, {3, -2, 1}))},
    {"OneFacetPastTheAxis", {{{10, -10, 0}, {10, 10, 20}, {9, 9, 20}, {}}}},
    {"EdgeThroughTheAxis", {{{10, 0, 0}, {-10, 0, 20}, {0, 0, 10}, {}}}},
    {"TwoAboveEachOther", both(box({-1, -1, 0}, {1, 1, 2}), box({-2, -2, 5}, {2, 2, 9}))},
    {"NoisyCylinder", noisy_cylinder()},
    {"SoupOfLongEdges", soup(300, 15, 1)},
    {"SoupOfSpecks", soup(2000, 0.005, 2)},
    {"LargeSoup", soup(20000, 3, 4)},
};

class Silhouette : public testing::TestWithParam<MeshCase> {};
INSTANTIATE_TEST_SUITE_P(Meshes, Silhouette, testing::ValuesIn(kMeshes), row_name<MeshCase>);

TEST_P(Silhouette, LiesWithinToleranceOfTheTrueOne) {
  const Mesh& mesh = GetParam().mesh;
  double low = HUGE_VAL;
  double high = -HUGE_VAL;
  for (const Facet& f : mesh) {
    low = std::min({low, f.a.z, f.b.z, f.c.z});
    high = std::max({high, f.a.z, f.b.z, f.c.z});
  }
  for (double tolerance : {1.0, 0.05, 0.001}) {
    const Polyline line = silhouette(mesh, tolerance);
    ASSERT_GE(line.size(), 3U);
    EXPECT_LT(distance(line.front(), {0, low}), 1e-9 + tolerance);
    EXPECT_LT(distance(line.back(), {0, high}), 1e-9 + tolerance);
    EXPECT_EQ(line.front().x + line.back().x, 0);
    for (int i = 0; i < 200; ++i) {
      const double z = low + (high - low) * (i + 0.5) / 200;
      const double radius = true_radius(mesh, z);
      if (radius < 0) continue;
      const bool inside = outline_radius(line, z) < radius;
      EXPECT_LE(distance_to_line({radius, z}, line), inside ? 0.3 * tolerance : tolerance)
          << tolerance << " at " << z;
    }
  }
}

TEST(SilhouetteOutline, OfACubeOnItsCornerIsAsWorkedOut) {
  const Polyline line = silhouette(cube_on_a_corner(), 1e-5);
  for (const auto& [z, radius] :
       {std::pair(3.0, 4.24264), {5.7735, 8.16497}, {7.0, 7.4507}, {8.66025, 7.07107}}) {
    EXPECT_NEAR(true_radius(cube_on_a_corner(), z), radius, 5e-5);
    EXPECT_NEAR(outline_radius(line, z), radius, 5e-5);
  }
}

TEST(SilhouetteOutline, HasTheFewestPoints) {
  EXPECT_EQ(silhouette(box({-3, -4, 0}, {3, 4, 20}), 0.01), points("0 0 ; 5 0 ; 5 20 ; 0 20"));
  EXPECT_EQ(silhouette(noisy_cylinder(), 0.01).size(), 6U);
}

TEST(SilhouetteOutline, IsEmptyWithoutHeight) {
  EXPECT_TRUE(silhouette({}, 0.01).empty());
  for (double z : {1.0, double{NAN}, HUGE_VAL}) {
    EXPECT_TRUE(silhouette(Mesh{{{0, 0, 1}, {5, 0, z}, {0, 5, 1}, {}}}, 0.01).empty()) << z;
  }
}

TEST(SilhouetteOutline, StaysBoundedForABadTolerance) {
  const Mesh mesh = soup(2000, 15, 8);
  for (double tolerance : {0.0, -1.0, double{NAN}, 1e-300}) {
    const Polyline line = silhouette(mesh, tolerance);
    EXPECT_NEAR(outline_radius(line, 0.5), true_radius(mesh, 0.5), 2e-3) << tolerance;
    EXPECT_LT(line.size(), 1000000U) << tolerance;
  }
}

Mesh insert(double y_min, double y_max) {
  return extruded({{0, 0}, {8, 9}, {0, 18}, {-8, 9}}, y_min, y_max);  // area 144
}

Mesh bar(double x0, double x1) { return box({x0, -1, 0}, {x1, 1, 2}); }

// A square frame, its opening 9 in area.
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
    {"RakeFaceInThePlaneBodyBelow", insert(-4.76, 0), {144}},
    {"BodyAboveThePlaneNeedsTheSecondPass", insert(0, 3), {144}},
    {"OnePassSeesNothingAbove", insert(0, 3), {}, {.passes = 1}},
    {"FaceNearlyInThePlane", insert(-4.76, -0.009), {144}},
    {"FaceBesideThePlane", insert(-4.76, -0.011), {}},
    {"SliverBodiesAcrossThePlane", shaken(insert(-4.76, 0), 0.004), {144}},
    {"OverlappingBodiesAreOne", both(bar(0, 2), bar(1, 5)), {10}},
    {"OverlappingBodiesApart", both(bar(0, 2), bar(1, 5)), {8, 4}, {.unite = false}},
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
  double max_gap;
  int max_steps;
  std::string_view segments;
  std::string_view loops;
};
constexpr LoopCase kLoops[] = {
    {"TwoThatMeetInAPoint", 1, 9,
     "0 0 ; 4 0 | 4 0 ; 0 4 | 0 4 ; 0 0 | 0 0 ; -4 0 | -4 0 ; 0 -4 | 0 -4 ; 0 0",
     "0 0 ; 4 0 ; 0 4 | 0 0 ; -4 0 ; 0 -4"},
    {"GapsKeepTheirCoordinates", 1, 9, "0 0 ; 4 0 | 4.5 0 ; 0 4 | 0 4.25 ; 0 0",
     "0 0 ; 4 0 ; 4.5 0 ; 0 4 ; 0 4.25"},
    {"TheShortestGapFirst", 1, 9, "0 0 ; 4 0 | 4.5 0 ; 0 4 | 0 4 ; 0 0 | 4.6 0 ; 9 0", ""},
    {"GapsBeyondTheLimitStayOpen", 3.9, 9, "0 0 ; 4 0 | 4 0 ; 0 4", ""},
    {"TwoSidesOfATriangleClose", 4, 9, "0 0 ; 4 0 | 4 0 ; 0 4", "0 0 ; 4 0 ; 0 4"},
    {"StepsAreCounted", 1, 1, "0 0 ; 4 0 | 4.5 0 ; 0 4 | 0 4.25 ; 0 0", ""},
    {"NearEndsAreNoSteps", 1, 0, "0 0 ; 4 0 | 4.005 0 ; 0 4 | 0 4 ; 0 0",
     "0 0 ; 4 0 ; 4.005 0 ; 0 4"},
};
class LoopBuilder : public testing::TestWithParam<LoopCase> {};
INSTANTIATE_TEST_SUITE_P(Segments, LoopBuilder, testing::ValuesIn(kLoops), row_name<LoopCase>);

TEST_P(LoopBuilder, JoinsSegments) {
  const auto& [name, max_gap, max_steps, texts, loops] = GetParam();
  std::vector<LineSegment> segments;
  for (const Polyline& ends : point_lists(texts)) segments.push_back({ends.at(0), ends.at(1)});
  EXPECT_EQ(build_loops(segments, {0.01, max_gap, max_steps}), point_lists(loops));
}

template <class T>
std::string bytes(const std::vector<T>& list) {
  return {reinterpret_cast<const char*>(list.data()), list.size() * sizeof(T)};
}

std::vector<std::string> results() {
  Polyline wave;
  for (int i = 0; i <= 400; ++i) wave.push_back({20 + std::sin(i * 0.1), i * 0.1});
  const Mesh mesh = soup(30000, 4, 5);
  const std::string text = stl_text(mesh, "soup");
  MemoryBytes source(text);
  std::string error;
  VexaTurningProfile section(0.01);
  section.Add(shaken(revolved(wave), 1e-4));
  std::vector<Polyline> contours;
  EXPECT_TRUE(section.Compute(contours, {}));
  return {bytes(revolved(wave, 1e-4)), bytes(silhouette(mesh, 0.01)),
          bytes(read_stl(source, error).value()), bytes(contours.at(0))};
}

TEST(Threads, OneAndManyGiveTheSameBytes) {
  const auto many = results();
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  EXPECT_TRUE(results() == many);
}

}  // namespace
}  // namespace tooldb

#include <gtest/gtest.h>

#include <cmath>

#include "apps/checks/contour_crossing.h"
#include "apps/drawing/contour_arcs.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

using Points = std::vector<Point2d<double>>;

struct CrossingCase {
  std::string_view name;
  Points contour;
  bool crosses;
};

const CrossingCase kCrossings[] = {
    {"EndMill", {{0, 0}, {5, 0}, {5, 40}, {0, 40}}, false},
    {"BowTie", {{0, 0}, {5, 5}, {5, 0}, {0, 5}}, true},
    {"Spike", {{0, 0}, {5, 0}, {5, 10}, {2, 14}, {8, 2}, {5, 30}, {0, 30}}, true},
    {"TouchesItself", {{0, 0}, {10, 0}, {5, 5}, {0, 5}, {5, 5}, {10, 10}, {0, 10}}, false},
    {"TwoPoints", {{0, 0}, {5, 5}}, false},
    {"InInches", {{0, 0}, {0.02, 0.02}, {0.02, 0}, {0, 0.02}}, true},
};

class Crossings : public testing::TestWithParam<CrossingCase> {};
TEST_P(Crossings, AreFoundWhereverTheContourLies) {
  for (const double shift : {0.0, 100.0}) {
    for (const double scale : {1.0, 25.4}) {
      Points moved;
      for (const auto& p : GetParam().contour) {
        moved.push_back({scale * p.x + shift, scale * p.y - shift});
      }
      EXPECT_EQ(contour_crossing(moved).has_value(), GetParam().crosses) << shift << ' ' << scale;
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Rows, Crossings, testing::ValuesIn(kCrossings), row_name<CrossingCase>);

TEST(ContourArcs, HaveTheirRadiusAndMiddle) {
  const auto arcs = contour_arcs(
      "<ARC DIR=\"CCW\" ><START>0 0</START><END>6 6</END><CENTER>0 6</CENTER></ARC>"
      "<LINE><START>6 6</START><END>6 9</END></LINE>"
      "<ARC DIR=\"CCW\" ><START>0 0</START><END>x</END><CENTER>0 6</CENTER></ARC><ARC");
  ASSERT_EQ(arcs.size(), 1U);
  EXPECT_DOUBLE_EQ(arcs[0].Radius(), 6);
  EXPECT_NEAR(arcs[0].Middle().x, std::sqrt(18), 1e-12);
  EXPECT_NEAR(arcs[0].Middle().y, 6 - std::sqrt(18), 1e-12);
}

}  // namespace
}  // namespace tooldb

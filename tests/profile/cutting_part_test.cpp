#include <gtest/gtest.h>

#include "tests/geom/row_name.h"
#include "tests/profile/bodies.h"
#include "tooldb/profile.h"
#include "tooldb/tool_makers.h"

namespace tooldb::test {
namespace {

struct CuttingCase {
  std::string_view name;
  int type;
  std::string_view params;
  std::string_view outline;  // the stored text
  Polyline points;           // all pieces, one after another; chords are wide
};

const CuttingCase kCutting[] = {
    {"Flat", 0, "", "", {{0, 0}, {25, 0}, {25, 50}}},
    {"Ball", 1, "DIAMETER=2", "", {{0, 0}, {1, 1}, {0, 2}}},
    {"BoringBar",
     11,
     "DIAMETER=32 DIAMETER1=25 HEIGHT=60 HEIGHT1=5 ANGLE=30 FILLET=0.8",
     "",
     {{0, 0}, {15.2, 0}, {16, 0.8}, {16, 5}}},
    {"Flanges",
     22,
     "HEIGHT1=6 DIAMETER1=40 DIAMETER2=50",
     "",
     {{20, 6}, {50, 6}, {50, 9}, {25, 9}}},
    {"Chamfer", 9, "", "", {{0, 0}, {2, 0}, {10, 8}}},
    {"ChamferMovedDown", 23, "STANDARD_TCPTYPE=2", "", {{0, -20}, {25, -20}, {25, 0}, {20, 0}}},
    {"Text", 5, "", "0 0 ; 3 0 ; 3 9 ; 0 9", {{0, 0}, {3, 0}, {3, 9}}},
    {"TextFromAxis", 5, "", "0 -2 ; 0 0 ; 3 0 ; 3 9 ; 0 9", {{0, 0}, {3, 0}, {3, 9}}},
    {"ClosedText", 8, "", "0 0 ; 5 8 ; 5 20 ; -5 20 ; -5 8 ; 0 0", {{-5, 8}, {0, 0}, {5, 8}}},
    {"RoundInsert", 7, "INSERT_SHAPE=R DIAMETER=2", "", {{-1, 1}, {0, 0}, {1, 1}}},
    {"SharpInsert",
     7,
     "INSERT_SHAPE=S DIAMETER=2 FILLET=0",
     "",
     {{-1.41421, 1.41421}, {0, 0}, {1.41421, 1.41421}}},
    {"SharpInsertShortEdge",
     7,
     "INSERT_SHAPE=S DIAMETER=2 FILLET=0 LENGTH=1",
     "",
     {{-0.707107, 0.707107}, {0, 0}, {0.707107, 0.707107}}},
    {"NosedInsertShortEdge",
     7,
     "INSERT_SHAPE=S DIAMETER=9 FILLET=1 LENGTH=3",
     "",
     {{-2.12132, 1.7071}, {-0.707107, 0.292893}, {0, 0}, {0.707107, 0.292893}, {2.12132, 1.7071}}},
    // The short edges are used up by the corners: there is an edge on the right alone.
    {"StadiumInsert",
     7,
     "INSERT_SHAPE=L DIAMETER=2 FILLET=1 LENGTH=3",
     "",
     {{-0.707107, 0.292893}, {0, 0}, {0.707107, 0.292893}, {1.41421, 1}}},
};

class CuttingPart : public testing::TestWithParam<CuttingCase> {};
INSTANTIATE_TEST_SUITE_P(Cutters, CuttingPart, testing::ValuesIn(kCutting), row_name<CuttingCase>);

TEST_P(CuttingPart, IsOnePiece) {
  const auto& [name, type, params, outline, points] = GetParam();
  tdbToolCutter cutter(type);
  set_params(cutter, params);
  cutter.SetProfileXml(contour_of(outline).c_str());
  std::vector<std::vector<Point2d<double>>> pieces;
  ASSERT_TRUE(tdbProfile::HilightCuttingProfile(cutter, 10, pieces));
  ASSERT_EQ(pieces.size(), 1U);
  // Wide tolerances leave an arc its quadrants alone.
  ASSERT_EQ(pieces[0].size(), points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    EXPECT_LT(distance(pieces[0][i], points[i]), 1e-4) << i;
  }
}

TEST(CuttingPartOfApt, IsItsLowerHalf) {
  tdbToolCutter cutter(8);
  ASSERT_TRUE(tdbMakeAptTurnCutter(&cutter, 1.6F, 12, 80, 15));
  std::vector<std::vector<Point2d<double>>> pieces;
  ASSERT_TRUE(tdbProfile::HilightCuttingProfile(cutter, 0.01, pieces));
  ASSERT_EQ(pieces.size(), 1U);
  EXPECT_EQ(pieces[0].front(), (Point2d<double>{-7.71345, 8.74795}));
  EXPECT_EQ(pieces[0].back(), (Point2d<double>{7.71345, 8.74795}));
}

TEST(CuttingPart, IsNoneWithoutAnOutline) {
  std::vector<std::vector<Point2d<double>>> pieces;
  tdbToolCutter model(6);
  model.SetProfileXml(contour_of("0 0 ; 1 1").c_str());
  tdbToolCutter refused(0);
  refused.SetParam("DIAMETER", "0");
  for (const auto* cutter : {&model, &refused}) {
    EXPECT_FALSE(tdbProfile::HilightCuttingProfile(*cutter, 0.1, pieces));
  }
  EXPECT_TRUE(pieces.empty());
}

}  // namespace
}  // namespace tooldb::test

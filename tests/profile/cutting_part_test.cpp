#include <gtest/gtest.h>

#include "tests/geom/points.h"
#include "tests/geom/row_name.h"
#include "tests/profile/bodies.h"
#include "tooldb/profile.h"

namespace tooldb::test {
namespace {

struct CuttingCase {
  std::string_view name;
  int type;
  std::string_view params;
  std::string_view outline;  // the stored text
  std::string_view points;   // of the only piece; its chords are wide
};

constexpr CuttingCase kCutting[] = {
    {"Flat", 0, "", "", "0 0 ; 25 0 ; 25 50"},
    {"Ball", 1, "DIAMETER=2", "", "0 0 ; 1 1 ; 0 2"},
    {"BoringBar", 11, "DIAMETER=32 DIAMETER1=25 HEIGHT=60 HEIGHT1=5 ANGLE=30 FILLET=0.8", "",
     "0 0 ; 15.2 0 ; 16 0.8 ; 16 5"},
    {"Flanges", 22, "HEIGHT1=6 DIAMETER1=40 DIAMETER2=50", "", "20 6 ; 50 6 ; 50 9 ; 25 9"},
    {"Chamfer", 9, "", "", "0 0 ; 2 0 ; 10 8"},
    {"ChamferMovedDown", 23, "STANDARD_TCPTYPE=2", "", "0 -20 ; 25 -20 ; 25 0 ; 20 0"},
    {"Text", 5, "", "0 0 ; 3 0 ; 3 9 ; 0 9", "0 0 ; 3 0 ; 3 9"},
    {"TextFromAxis", 5, "", "0 -2 ; 0 0 ; 3 0 ; 3 9 ; 0 9", "0 0 ; 3 0 ; 3 9"},
    {"OpenText", 8, "", "0 0 ; 5 8 ; 5 20 ; -5 20", "0 0 ; 5 8 ; 5 20"},
    {"ClosedText", 8, "", "0 0 ; 5 8 ; 5 20 ; -5 20 ; -5 8 ; 0 0", "-5 8 ; 0 0 ; 5 8"},
    {"RoundInsert", 7, "INSERT_SHAPE=R DIAMETER=2", "", "-1 1 ; 0 0 ; 1 1"},
    {"SharpInsert", 7, "INSERT_SHAPE=S DIAMETER=2 FILLET=0", "",
     "-1.41421 1.41421 ; 0 0 ; 1.41421 1.41421"},
    {"SharpInsertShortEdge", 7, "INSERT_SHAPE=S DIAMETER=2 FILLET=0 LENGTH=1", "",
     "-0.707107 0.707107 ; 0 0 ; 0.707107 0.707107"},
    {"NosedInsertShortEdge", 7, "INSERT_SHAPE=S DIAMETER=9 FILLET=1 LENGTH=3", "",
     "-2.12132 1.7071 ; -0.707107 0.292893 ; 0 0 ; 0.707107 0.292893 ; 2.12132 1.7071"},
    // The short edges are used up by the corners: there is an edge on the right alone.
    {"StadiumInsert", 7, "INSERT_SHAPE=L DIAMETER=2 FILLET=1 LENGTH=3", "",
     "-0.707107 0.292893 ; 0 0 ; 0.707107 0.292893 ; 1.41421 1"},
};

class CuttingPart : public testing::TestWithParam<CuttingCase> {};
INSTANTIATE_TEST_SUITE_P(Cutters, CuttingPart, testing::ValuesIn(kCutting), row_name<CuttingCase>);

bool find_cutting_part(tdbItem& cutter, Contours& pieces) {
  // Wide tolerances leave an arc its quadrants alone.
  return tdbProfile::HilightCuttingProfile(dynamic_cast<tdbToolCutter&>(cutter), 10, pieces);
}

TEST_P(CuttingPart, IsOnePiece) {
  const auto& [name, type, params, outline, expected] = GetParam();
  Contours pieces;
  ASSERT_TRUE(find_cutting_part(*make_body("cutter", type, params, outline), pieces));
  ASSERT_EQ(pieces.size(), 1U);
  const Polyline wanted = points(expected);
  ASSERT_EQ(pieces[0].size(), wanted.size());
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    EXPECT_LT(distance(pieces[0][i], wanted[i]), 1e-4) << i;
  }
}

TEST(CuttingPart, IsNoneWithoutAnOutline) {
  Contours pieces;
  EXPECT_FALSE(find_cutting_part(*make_body("cutter", 6, "", "0 0 ; 1 1"), pieces));
  EXPECT_FALSE(find_cutting_part(*make_body("cutter", 0, "DIAMETER=0"), pieces));
  EXPECT_TRUE(pieces.empty());
}

}  // namespace
}  // namespace tooldb::test

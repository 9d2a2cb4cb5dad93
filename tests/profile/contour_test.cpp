#include "tooldb/contour.h"

#include <gtest/gtest.h>

#include <cmath>

#include "tests/geom/row_name.h"
#include "tests/profile/bodies.h"

namespace tooldb::test {
namespace {

struct TextCase {
  std::string_view name;
  std::string_view text;
};

constexpr TextCase kBroken[] = {
    {"Empty", ""},
    {"Word", "LINE"},
    {"OnlyComment", "<!-- nothing -->"},
    {"Enclosed", "<PROFILE><LINE><START>0 0</START><END>1 0</END></LINE></PROFILE>"},
    {"LowerCase", "<line><START>0 0</START><END>1 0</END></line>"},
    {"TextBetween", "<LINE><START>0 0</START><END>1 0</END></LINE> x"},
    {"TextInside", "<LINE>x<START>0 0</START><END>1 0</END></LINE>"},
    {"NoEnd", "<LINE><START>0 0</START></LINE>"},
    {"NoStart", "<LINE><END>0 0</END></LINE>"},
    {"TwoStarts", "<LINE><START>0 0</START><START>0 0</START><END>1 0</END></LINE>"},
    {"LineWithCentre", "<LINE><START>0 0</START><END>1 0</END><CENTER>0 0</CENTER></LINE>"},
    {"ArcWithoutCentre", "<ARC DIR=\"CW\"><START>0 0</START><END>1 0</END></ARC>"},
    {"ArcWithoutDirection", "<ARC><START>0 0</START><END>1 0</END><CENTER>0 0</CENTER></ARC>"},
    {"UnknownDirection",
     "<ARC DIR=\"cw\"><START>0 0</START><END>1 0</END><CENTER>0 0</CENTER></ARC>"},
    {"UnknownChild", "<LINE><START>0 0</START><END>1 0</END><MIDDLE>0 0</MIDDLE></LINE>"},
    {"OneNumber", "<LINE><START>0</START><END>1 0</END></LINE>"},
    {"ThreeNumbers", "<LINE><START>0 0 0</START><END>1 0</END></LINE>"},
    {"Comma", "<LINE><START>0,5 0</START><END>1 0</END></LINE>"},
    {"Nan", "<LINE><START>nan 0</START><END>1 0</END></LINE>"},
    {"Infinite", "<LINE><START>0 0</START><END>1 1e999</END></LINE>"},
    {"NestedNumber", "<LINE><START>0 <X/>0</START><END>1 0</END></LINE>"},
    {"Unclosed", "<LINE><START>0 0</START><END>1 0</END>"},
    {"Crossed", "<LINE><START>0 0</LINE><END>1 0</END></START>"},
    {"Deep", "<LINE><START><START><START>0 0</START></START></START><END>1 0</END></LINE>"},
};

class BrokenContour : public testing::TestWithParam<TextCase> {};
INSTANTIATE_TEST_SUITE_P(Texts, BrokenContour, testing::ValuesIn(kBroken), row_name<TextCase>);

TEST_P(BrokenContour, IsRefused) {
  CEntityDB entities;
  ASSERT_TRUE(entities.Read(contour_of("0 0 ; 1 0"), false, 0));
  EXPECT_FALSE(entities.Read(std::string(GetParam().text), false, 0));
  std::vector<Point2d<double>> points;
  EXPECT_FALSE(entities.GetXZProfile(points, 0.1));
  tdbToolCutter cutter(5);
  cutter.SetProfileXml(std::string(GetParam().text).c_str());
  std::vector<std::vector<Point2d<double>>> contours{{{1, 1}, {2, 2}}};
  EXPECT_FALSE(cutter.GetProfile(nullptr, contours, 0.1, 0));
  EXPECT_EQ(contours.size(), 1U);
}

TEST(Contour, CutAfterAnyByteIsShorterOrRefused) {
  const std::string text = contour_of("0 0 ; 5 0 ; ccw 6 1 @ 5 1 ; cw 7 2 @ 7 1 ; 7 9");
  std::size_t accepted = 0;
  for (std::size_t length = 0; length < text.size(); ++length) {
    const std::string part = text.substr(0, length);
    const auto segments = parse_contour(part);
    if (!segments) continue;
    ++accepted;
    EXPECT_EQ(contour_text(*segments), part);
  }
  EXPECT_EQ(accepted, 3U);  // after each element but the last
}

TEST(Contour, ReadsWhatOthersWrite) {
  const std::string text =
      "<?xml version='1.0'?>\r\n<!-- a nose -->\n"
      "<LINE ID=\"1\">\n <END> 5.000000\t0 </END>\n <START>0 -0.0</START></LINE>\r\n"
      "<ARC DIR='CCW'><CENTER>5 1</CENTER><START>5 0</START><END>6e0 +1</END></ARC>";
  CEntityDB entities;
  ASSERT_TRUE(entities.Read(text, false, 0));
  entities.ConcatenateEntities();
  std::vector<Point2d<double>> points;
  ASSERT_TRUE(entities.GetXYProfile(points, 1));
  EXPECT_EQ(points, (std::vector<Point2d<double>>{{0, 0}, {5, 0}, {6, 1}}));
}

TEST(Contour, ChainsInOrderAndKeepsGaps) {
  CEntityDB entities;
  ASSERT_TRUE(entities.Read(contour_of("0 0 ; 5 0 ; 5 9") + contour_of("5.2 9 ; 0 9"), false, 0));
  std::vector<Point2d<double>> loose;
  ASSERT_TRUE(entities.GetXZProfile(loose, 0.1));
  EXPECT_EQ(loose.size(), 6U);
  entities.ConcatenateEntities();
  std::vector<Point2d<double>> chained;
  ASSERT_TRUE(entities.GetXZProfile(chained, 0.1));
  EXPECT_EQ(chained, (std::vector<Point2d<double>>{{0, 0}, {5, 0}, {5, 9}, {5.2, 9}, {0, 9}}));
  std::vector<Point2d<double>> joined;
  ASSERT_TRUE(entities.GetXZProfile(joined, 0.3));
  EXPECT_EQ(joined, (std::vector<Point2d<double>>{{0, 0}, {5, 0}, {5, 9}, {0, 9}}));
  for (const double tolerance : {0.0, -1.0, std::nan("")}) {
    EXPECT_FALSE(entities.GetXZProfile(joined, tolerance));
  }
}

TEST(Contour, ReadsAFile) {
  CEntityDB entities;
  EXPECT_FALSE(entities.Read("/no/such/contour.xml", true, 0));
  EXPECT_FALSE(entities.Read(contour_of("0 0 ; 1 0"), true, 0));
}

// Chords of an arc: on its circle, at its quadrants, and never farther from it than the tolerance.
TEST(Contour, ChordsKeepToTheTolerance) {
  const std::string text =
      "<ARC DIR=\"CCW\" ><START>8 0</START><END>-8 0</END>"
      "<CENTER>0 0</CENTER></ARC>";
  for (const double tolerance : {1.0, 0.1, 0.01, 1e-4}) {
    CEntityDB entities;
    ASSERT_TRUE(entities.Read(text, false, 0));
    std::vector<Point2d<double>> points;
    ASSERT_TRUE(entities.GetXZProfile(points, tolerance));
    EXPECT_NE(std::ranges::find(points, Point2d<double>{0, 8}), points.end());
    for (std::size_t i = 1; i < points.size(); ++i) {
      const Vec2 middle = 0.5 * (points[i - 1] + points[i]);
      EXPECT_NEAR(length(points[i]), 8, 1e-9);
      EXPECT_LE(8 - length(middle), tolerance * (1 + 1e-9));
    }
  }
}

}  // namespace
}  // namespace tooldb::test

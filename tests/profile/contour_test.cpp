#include "tooldb/contour.h"

#include <gtest/gtest.h>

#include "tests/geom/points.h"
#include "tests/profile/bodies.h"
#include "tests/storage/scratch_folder.h"

namespace tooldb::test {
namespace {

constexpr const char* kBroken[] = {
    "",
    "LINE",
    "<!-- nothing -->",
    "<PROFILE><LINE><START>0 0</START><END>1 0</END></LINE></PROFILE>",
    "<line><START>0 0</START><END>1 0</END></line>",
    "<LINE><START>0 0</START><END>1 0</END></LINE> x",
    "<LINE>x<START>0 0</START><END>1 0</END></LINE>",
    "<LINE><START>0 0</START></LINE>",
    "<LINE><END>0 0</END></LINE>",
    "<LINE><START>0 0</START><START>0 0</START><END>1 0</END></LINE>",
    "<LINE><START>0 0</START><END>1 0</END><CENTER>0 0</CENTER></LINE>",
    "<ARC DIR=\"CW\"><START>0 0</START><END>1 0</END></ARC>",
    "<ARC><START>0 0</START><END>1 0</END><CENTER>0 0</CENTER></ARC>",
    "<ARC DIR=\"cw\"><START>0 0</START><END>1 0</END><CENTER>0 0</CENTER></ARC>",
    "<LINE><START>0 0</START><END>1 0</END><MIDDLE>0 0</MIDDLE></LINE>",
    "<LINE><START>0</START><END>1 0</END></LINE>",
    "<LINE><START>0 0 0</START><END>1 0</END></LINE>",
    "<LINE><START>0,5 0</START><END>1 0</END></LINE>",
    "<LINE><START>nan 0</START><END>1 0</END></LINE>",
    "<LINE><START>0 0</START><END>1 1e999</END></LINE>",
    "<LINE><START>0 0<X/></START><END>1 0</END></LINE>",
    "<LINE><START>0 0</START><END>1 0</END>",
    "<LINE><START><START><START>0 0</START></START></START><END>1 0</END></LINE>",
};

TEST(Contour, ThatIsBrokenIsRefused) {
  for (const char* text : kBroken) {
    CEntityDB entities;
    ASSERT_TRUE(entities.Read(contour_of("0 0 ; 1 0"), false, 0));
    EXPECT_FALSE(entities.Read(text, false, 0)) << text;
    Polyline line;
    EXPECT_FALSE(entities.GetXZProfile(line, 0.1)) << text;
    tdbToolCutter cutter(5);
    cutter.SetProfileXml(text);
    Contours contours{points("1 1 ; 2 2")};
    EXPECT_FALSE(cutter.GetProfile(nullptr, contours, 0.1, 0)) << text;
    EXPECT_EQ(contours.size(), 1U);
  }
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

TEST(Contour, ReadsWhatOthersWriteFromTextAndFile) {
  const std::string text =
      "<?xml version='1.0'?>\r\n<!-- a nose -->\n"
      "<LINE ID=\"1\">\n <END> 5.000000\t0 </END>\n <START>0 -0.0</START></LINE>\r\n"
      "<ARC DIR='CCW'><CENTER>5 1</CENTER><START>5 0</START><END>6e0 +1</END></ARC>";
  const ScratchFolder folder;
  CEntityDB entities;
  for (const bool is_path : {false, true}) {
    ASSERT_TRUE(entities.Read(is_path ? folder.MakeFile("nose.xml", text) : text, is_path, 0));
    entities.ConcatenateEntities();
    Polyline line;
    ASSERT_TRUE(entities.GetXYProfile(line, 1));
    EXPECT_EQ(line, points("0 0 ; 5 0 ; 6 1"));
    EXPECT_FALSE(entities.GetXYProfile(line, 0));
  }
  EXPECT_FALSE(entities.Read(folder.Path("none.xml"), true, 0));
}

TEST(Contour, ChainsInOrderAndKeepsGaps) {
  CEntityDB entities;
  ASSERT_TRUE(entities.Read(
      contour_of("0 0 ; 5 0") + contour_of("5.05 0 ; 5 9") + contour_of("5.2 9 ; 0 9"), false, 0));
  Polyline line;
  ASSERT_TRUE(entities.GetXZProfile(line, 0.1));
  EXPECT_EQ(line, points("0 0 ; 5 0 ; 5.05 0 ; 5 9 ; 5.2 9 ; 0 9"));
  line.clear();
  entities.ConcatenateEntities();
  ASSERT_TRUE(entities.GetXZProfile(line, 0.1));
  EXPECT_EQ(line, points("0 0 ; 5 0 ; 5 9 ; 5.2 9 ; 0 9"));
}

}  // namespace
}  // namespace tooldb::test

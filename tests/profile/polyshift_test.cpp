#include "tooldb/profile/polyshift.h"

#include <gtest/gtest.h>

#include "geom/polyline.h"
#include "tooldb/profile.h"

namespace tooldb::test {
namespace {

const Polyline kBox{{0, 0}, {10, 0}, {10, 40}, {0, 40}, {0, 0}};

TEST(Polyshift, OffsetsThroughTheLibrary) {
  const auto library = Polyshift::Load(POLYSHIFT_DOUBLE);
  ASSERT_TRUE(library);
  const auto polygons = library->Offset(kBox, 1);
  ASSERT_TRUE(polygons);
  ASSERT_EQ(polygons->size(), 2U);  // the degenerate one is dropped
  EXPECT_EQ(polygons->front().size(), 5U);
  EXPECT_EQ(polygons->front().front(), polygons->front().back());
  EXPECT_EQ(signed_area(polygons->front()), 12 * 42);
  EXPECT_EQ(signed_area(polygons->back()), 0.5);
  EXPECT_FALSE(library->Offset(kBox, 0));
  const auto open =
      DynamicLibrary::Load(POLYSHIFT_DOUBLE)->Find<int (*)()>("polyshift_test_open_handles");
  EXPECT_EQ(open(), 0);
}

TEST(Polyshift, IsNoneWithoutAWholeLibrary) {
  EXPECT_FALSE(Polyshift::Load("/no/such/PolyshiftDLL.dll"));
  EXPECT_FALSE(Polyshift::Load(__FILE__));
  EXPECT_FALSE(Polyshift::Load(INCOMPLETE_LIBRARY));
  EXPECT_EQ(Polyshift::BesideHost(), nullptr);
}

// Without the library the own offset serves.
TEST(OffsetProfile, GrowsAndShrinks) {
  const auto grown = tdbProfile::OffsetProfile2(kBox, 0.001);
  ASSERT_EQ(grown.size(), 1U);
  EXPECT_NEAR(signed_area(grown[0]), 400.1, 1e-4);
  const auto shrunk = tdbProfile::OffsetProfile2(kBox, -1);
  ASSERT_EQ(shrunk.size(), 1U);
  EXPECT_NEAR(signed_area(shrunk[0]), 304, 1e-4);
  EXPECT_TRUE(tdbProfile::OffsetProfile2(kBox, -6).empty());
}

}  // namespace
}  // namespace tooldb::test

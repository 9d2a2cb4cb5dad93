#include "tooldb/profile/polyshift.h"

#include <gtest/gtest.h>

#include "geom/polyline.h"

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

}  // namespace
}  // namespace tooldb::test

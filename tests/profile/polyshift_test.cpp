#include "tooldb/profile/polyshift.h"

#include <gtest/gtest.h>

#include "geom/polyline.h"

namespace tooldb::test {
namespace {

TEST(Polyshift, OffsetsThroughTheLibrary) {
  const Polyline box{{0, 0}, {10, 0}, {10, 40}, {0, 40}};
  const auto library = Polyshift::Load(POLYSHIFT_DOUBLE);
  ASSERT_TRUE(library);
  const auto polygons = library->Offset(box, 2);
  ASSERT_TRUE(polygons);
  ASSERT_EQ(polygons->size(), 2U);  // the degenerate one is dropped
  EXPECT_EQ(polygons->front().size(), 5U);
  EXPECT_EQ(polygons->front().front(), polygons->front().back());
  EXPECT_EQ(signed_area(polygons->front()), 20 * 80);
  EXPECT_EQ(signed_area(polygons->back()), 0.5);
  EXPECT_FALSE(library->Offset(box, 0));
  const auto open =
      DynamicLibrary::Load(POLYSHIFT_DOUBLE)->Find<int (*)()>("polyshift_test_open_handles");
  EXPECT_EQ(open(), 0);
}

TEST(Polyshift, IsNoneWithoutAWholeLibrary) {
  for (const char* path : {"/no/such/PolyshiftDLL.dll", __FILE__, INCOMPLETE_LIBRARY}) {
    EXPECT_FALSE(Polyshift::Load(path)) << path;
  }
  EXPECT_EQ(Polyshift::BesideHost(), nullptr);
}

}  // namespace
}  // namespace tooldb::test

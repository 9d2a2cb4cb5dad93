#include "geom/euler_angles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "geom/number_text.h"

namespace tooldb {
namespace {

using Matrix = Transformation<double>;

std::string text_of(const EulerAngles& angles) {
  return general_text(angles.z) + " " + general_text(angles.y) + " " + general_text(angles.x);
}

// What a document does to angles: six significant digits, and back.
EulerAngles rounded(const EulerAngles& angles) {
  const auto once = [](double value) { return leading_number(general_text(value)); };
  return {once(angles.z), once(angles.y), once(angles.x)};
}

Matrix rotation(const double (&rows)[9]) {
  Matrix m;
  for (int i = 0; i < 9; ++i) m(i / 3, i % 3) = rows[i];
  return m;
}

struct SplitCase {
  std::string_view name;
  double rows[9];
  std::string_view text;
};

constexpr double kHalf = 0.5;
constexpr double kRoot = 0.8660254037844386;

// Angles of matrices written down by hand. The identity's Y is a negative zero: it is the arc
// tangent of minus zero.
const SplitCase kSplits[] = {
    {"Identity", {1, 0, 0, 0, 1, 0, 0, 0, 1}, "0 -0 0"},
    {"Z90", {0, -1, 0, 1, 0, 0, 0, 0, 1}, "90 -0 0"},
    {"Z180", {-1, 0, 0, 0, -1, 0, 0, 0, 1}, "180 -0 0"},
    {"Z30", {kRoot, -kHalf, 0, kHalf, kRoot, 0, 0, 0, 1}, "30 -0 0"},
    {"Y30", {kRoot, 0, kHalf, 0, 1, 0, -kHalf, 0, kRoot}, "0 30 0"},
    {"X30", {1, 0, 0, 0, kRoot, -kHalf, 0, kHalf, kRoot}, "0 -0 30"},
    {"X180", {1, 0, 0, 0, -1, 0, 0, 0, -1}, "0 -0 180"},
    {"Y90", {0, 0, 1, 0, 1, 0, -1, 0, 0}, "0 90 -0"},
    {"Zeros", {1, -0.0, -0.0, -0.0, 1, -0.0, -0.0, -0.0, 1}, "0 -0 0"},
    {"HalfTurns", {-1, 0, 0, -0.0, 1, 1e-17, 0, 0, -1}, "180 -0 180"},
    {"YMinus90", {0, 0, -1, 0, 1, 0, 1, 0, 0}, "0 -90 -0"},
    // Z and X turn about one axis: their difference, 30 degrees, is all put into X.
    {"Y90X30", {0, kHalf, kRoot, 0, kRoot, -kHalf, -1, 0, 0}, "0 90 30"},
    // Just inside and just outside the width that counts as upright.
    {"AlmostUpright", {2e-16, 0, 1, 2e-16, 1, 0, -1, 0, 0}, "0 90 -0"},
    {"NotUpright", {0, -1, 0, 3e-16, 0, 1, -1, 0, 0}, "90 90 0"},
};

class EulerSplit : public testing::TestWithParam<SplitCase> {};
TEST_P(EulerSplit, GivesTheAngles) {
  EXPECT_EQ(text_of(split_zyx(rotation(GetParam().rows))), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(Matrices, EulerSplit, testing::ValuesIn(kSplits),
                         [](const auto& row) { return std::string(row.param.name); });

Matrix about(char axis, double degrees) {
  const int a = axis == 'x' ? 1 : axis == 'y' ? 2 : 0;
  const int b = (a + 1) % 3;
  const double radians = degrees * std::acos(-1.0) / 180;
  Matrix m;
  m(a, a) = m(b, b) = std::cos(radians);
  m(b, a) = std::sin(radians);
  m(a, b) = -std::sin(radians);
  return m;
}

TEST(EulerJoin, IsTheProductOfTheThreeTurns) {
  for (const double z : {-170.0, 0.0, 33.0, 90.0})
    for (const double y : {-90.0, -45.0, 0.0, 12.5, 130.0})
      for (const double x : {-180.0, 0.0, 7.0, 90.0}) {
        const Matrix expected = about('z', z) * about('y', y) * about('x', x);
        const Matrix joined = join_zyx({z, y, x}, {});
        for (int i = 0; i < 9; ++i)
          EXPECT_NEAR(joined(i / 3, i % 3), expected(i / 3, i % 3), 1e-14) << z << y << x;
      }
}

TEST(EulerJoin, RightAnglesAreExact) {
  for (const double z : {-180.0, -90.0, 0.0, 90.0, 180.0, 270.0, 3600.0})
    for (const double y : {-180.0, 0.0, 180.0, 360.0})
      for (const double x : {-180.0, -90.0, 0.0, 90.0, 180.0}) {
        const Matrix m = join_zyx({z, y, x}, {1, 2, 3});
        for (int i = 0; i < 9; ++i)
          EXPECT_TRUE(m(i / 3, i % 3) == std::round(m(i / 3, i % 3))) << z << y << x;
      }
  EXPECT_TRUE(join_zyx({0, 90, 0}, {}) == rotation({0, 0, 1, 0, 1, 0, -1, 0, 0}));
  EXPECT_TRUE(join_zyx({}, {}) == Matrix());
}

// Split, rounded as in a document, joined and split again: the text must not move.
void expect_fixed(const Matrix& m) {
  const EulerAngles angles = split_zyx(m);
  EXPECT_EQ(text_of(split_zyx(join_zyx(rounded(angles), {}))), text_of(angles));
}

TEST(EulerRoundTrip, HoldsOnAGridWithRightAnglesAndTinyOnes) {
  const std::vector<double> grid = {-360,   -180, -179.999, -90,  -89.9999, -30,  -1e-7,
                                    -1e-20, -0.0, 0,        1e-9, 1e-5,     12.5, 45,
                                    60,     90,   120,      180,  360};
  for (const double z : grid)
    for (const double y : grid)
      for (const double x : grid) {
        SCOPED_TRACE(text_of({z, y, x}));
        expect_fixed(join_zyx({z, y, x}, {}));
        expect_fixed(about('z', z) * about('y', y) * about('x', x));
      }
}

TEST(EulerRoundTrip, HoldsForRandomPlacementsAndTheirProducts) {
  std::mt19937 random(20240607);
  std::uniform_real_distribution<double> any(-180, 180);
  std::uniform_int_distribution<int> quarter(-2, 2);
  Matrix chain;
  for (int i = 0; i < 20000; ++i) {
    const Matrix m = join_zyx({any(random), any(random), any(random)}, {});
    expect_fixed(m);
    // Long products gather rounding around right angles.
    chain = chain * about("xyz"[i % 3], 90.0 * quarter(random));
    expect_fixed(chain);
  }
}

}  // namespace
}  // namespace tooldb

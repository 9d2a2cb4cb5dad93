#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <string_view>

#include "geom/euler_angles.h"
#include "geom/number_text.h"
#include "geom/transform.h"

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

struct SplitCase {
  double rows[9];
  std::string_view text;
};

constexpr double kRoot = 0.8660254037844386;

// Matrices written down by hand. The identity's Y is a negative zero: the arc tangent of minus
// zero.
constexpr SplitCase kSplits[] = {
    {{1, 0, 0, 0, 1, 0, 0, 0, 1}, "0 -0 0"},
    {{1, -0.0, -0.0, -0.0, 1, -0.0, -0.0, -0.0, 1}, "0 -0 0"},
    {{-1, 0, 0, -0.0, 1, 1e-17, 0, 0, -1}, "180 -0 180"},
    {{kRoot, -0.5, 0, 0.5, kRoot, 0, 0, 0, 1}, "30 -0 0"},
    {{0, 0, -1, 0, 1, 0, 1, 0, 0}, "0 -90 -0"},
    // Z and X turn about one axis: their difference, 30 degrees, is all put into X.
    {{0, 0.5, kRoot, 0, kRoot, -0.5, -1, 0, 0}, "0 90 30"},
    // Just inside and just outside the width that counts as upright.
    {{2e-16, 0, 1, 2e-16, 1, 0, -1, 0, 0}, "0 90 -0"},
    {{0, -1, 0, 3e-16, 0, 1, -1, 0, 0}, "90 90 0"},
};

TEST(EulerSplit, GivesTheAngles) {
  for (const auto& [rows, text] : kSplits) {
    Matrix m;
    for (int i = 0; i < 9; ++i) m(i / 3, i % 3) = rows[i];
    EXPECT_EQ(text_of(split_zyx(m)), text);
  }
}

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

// Split, rounded as in a document, joined and split again: the text must not move.
void expect_fixed(const Matrix& m) {
  const EulerAngles angles = split_zyx(m);
  EXPECT_EQ(text_of(split_zyx(join_zyx(rounded(angles), {}))), text_of(angles));
}

// The join of angles is the product of three turns, exactly so for right angles; both make the
// round trip. A turn about Z beside a right angle about Y is kept by a deviation from that.
TEST(EulerJoin, HoldsOnAGridWithRightAnglesAndTinyOnes) {
  const double grid[] = {-360, -180, -179.999, -90, -89.9999, -30, -1e-7, -1e-20, -0.0, 0,
                         1e-9, 1e-5, 12.5,     45,  60,       90,  120,   180,    360,  3600};
  const auto is_multiple = [](double angle, double of) { return std::remainder(angle, of) == 0; };
  for (const double z : grid)
    for (const double y : grid)
      for (const double x : grid) {
        SCOPED_TRACE(text_of({z, y, x}));
        const Matrix joined = join_zyx({z, y, x}, {});
        const Matrix product = about('z', z) * about('y', y) * about('x', x);
        const bool exact = is_multiple(x, 90) && is_multiple(z, is_multiple(y, 180) ? 90 : 360) &&
                           is_multiple(y, 90);
        for (int i = 0; i < 9; ++i) {
          const double element = product(i / 3, i % 3);
          ASSERT_NEAR(joined(i / 3, i % 3), exact ? std::round(element) : element,
                      exact ? 0 : 1e-13);
        }
        expect_fixed(joined);
        expect_fixed(product);
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

TEST(Transform, RigidInverseUndoesAPlacement) {
  const Vec3 p{0.5, -3, 8};
  for (const EulerAngles& angles : {EulerAngles{}, {90, 0, 0}, {30, -20, 110}, {0, 90, 45}}) {
    const Placement there = join_zyx(angles, {-5, 0.25, 1e3});
    const Placement back = rigid_inverse(there);
    EXPECT_LT(length(transform_point(back, transform_point(there, p)) - p), 1e-12);
    EXPECT_LT(length(transform_point(back * there, p) - p), 1e-12);
    EXPECT_NEAR(determinant(there), 1, 1e-15);
  }
  EXPECT_EQ(transform_point(join_zyx({90, 0, 0}, {10, 20, 30}), {1, 2, 3}), (Vec3{8, 21, 33}));
}

}  // namespace
}  // namespace tooldb

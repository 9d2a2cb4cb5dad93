#include "geom/euler_angles.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace tooldb {
namespace {

constexpr double kDegreesPerRadian = 1 / (std::numbers::pi / 180);
constexpr double kRadiansPerDegree = std::numbers::pi / 180;
constexpr double kEpsilon = std::numeric_limits<double>::epsilon();

// A difference this much smaller than its terms has too few good digits left to be read back.
constexpr double kCancelled = 1e-8;

// Below this, six digits show -180: the half turn, whose sign is chance.
constexpr double kRoundsToMinusHalfTurn = -179.9995;

double turn_in_degrees(double radians) {
  const double degrees = radians * kDegreesPerRadian;
  return degrees < kRoundsToMinusHalfTurn ? degrees + 360 : degrees;
}

// A zero's sign is chance too, and the arc tangent would show it.
double element(const Transformation<double>& m, int row, int col) { return m(row, col) + 0.0; }

double difference(double a, double b) {
  const double value = a - b;
  return std::abs(value) <= kCancelled * std::max(std::abs(a), std::abs(b)) ? 0 : value;
}

// Of -45..45 degrees.
double small_sine(double degrees) { return std::sin(degrees * kRadiansPerDegree); }
double small_cosine(double degrees) { return std::cos(degrees * kRadiansPerDegree); }

// The multiple of 90 degrees nearest to an angle, as a quarter 0..3, and what remains.
struct Quarter {
  int index;
  double rest;
};

Quarter quarter_of(double degrees) {
  int quotient = 0;
  const double rest = std::remquo(degrees, 90.0, &quotient);
  return {quotient & 3, rest};
}

void set_columns(Transformation<double>& m, const EulerAngles& angles, double cos_y) {
  const double sz = sin_degrees(angles.z);
  const double cz = cos_degrees(angles.z);
  const double sy = sin_degrees(angles.y);
  const double sx = sin_degrees(angles.x);
  const double cx = cos_degrees(angles.x);
  m(0, 0) = cz * cos_y;
  m(1, 0) = sz * cos_y;
  m(2, 0) = -sy;
  m(0, 1) = cz * sy * sx - sz * cx;
  m(1, 1) = cz * cx + sz * sy * sx;
  m(2, 1) = cos_y * sx;
  m(0, 2) = sz * sx + cz * sy * cx;
  m(1, 2) = sz * sy * cx - cz * sx;
  m(2, 2) = cos_y * cx;
}

// The X axis points along -Z or Z: `turn` is what X and Z make together.
void set_upright_columns(Transformation<double>& m, double sy, double turn) {
  m(0, 0) = 0;
  m(1, 0) = 0;
  m(2, 0) = -sy;
  m(0, 1) = sy * sin_degrees(turn);
  m(1, 1) = cos_degrees(turn);
  m(2, 1) = 0;
  m(0, 2) = sy * cos_degrees(turn);
  m(1, 2) = -sin_degrees(turn);
  m(2, 2) = 0;
}

}  // namespace

double sin_degrees(double angle) {
  const auto [index, rest] = quarter_of(angle);
  switch (index) {
    case 0:
      return small_sine(rest);
    case 1:
      return small_cosine(rest);
    case 2:
      return 0 - small_sine(rest);
    default:
      return -small_cosine(rest);
  }
}

double cos_degrees(double angle) {
  const auto [index, rest] = quarter_of(angle);
  switch (index) {
    case 0:
      return small_cosine(rest);
    case 1:
      return 0 - small_sine(rest);
    case 2:
      return -small_cosine(rest);
    default:
      return small_sine(rest);
  }
}

EulerAngles split_zyx(const Transformation<double>& m) {
  const double r00 = element(m, 0, 0);
  const double r10 = element(m, 1, 0);
  const double r20 = element(m, 2, 0);
  if (std::abs(r00) < kEpsilon && std::abs(r10) < kEpsilon) {
    return {0, std::atan2(-r20, r00) * kDegreesPerRadian,
            turn_in_degrees(std::atan2(-element(m, 1, 2), m(1, 1)))};
  }
  // Sine and cosine of the Z angle, exact at right angles.
  const double length = std::hypot(r00, r10);
  const double sz = r10 / length;
  const double cz = r00 / length;
  return {turn_in_degrees(std::atan2(r10, r00)),
          std::atan2(-r20, cz * r00 + sz * r10) * kDegreesPerRadian,
          turn_in_degrees(
              std::atan2(difference(sz * m(0, 2), cz * m(1, 2)), cz * m(1, 1) - sz * m(0, 1)))};
}

Transformation<double> join_zyx(const EulerAngles& angles, const Vec3d<double>& origin) {
  Transformation<double> m;
  const double cos_y = cos_degrees(angles.y);
  const double sin_y = sin_degrees(angles.y);
  if (cos_y != 0) {
    set_columns(m, angles, cos_y);
  } else if (std::remainder(angles.z, 360) == 0) {
    set_upright_columns(m, sin_y, angles.x);
  } else {
    // A Z angle beside a right angle about Y means that the rotation was split just off it; this
    // much off, it splits so again.
    set_columns(m, angles, 4 * kEpsilon);
  }
  m(0, 3) = origin.x;
  m(1, 3) = origin.y;
  m(2, 3) = origin.z;
  return m;
}

}  // namespace tooldb

#include "geom/line_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace tooldb {
namespace {

using Matrix = std::array<std::array<double, 3>, 3>;

// Spreads nearer to each other than this part are equal.
constexpr double kEqual = 1e-12;

double component(const Vec3& v, std::size_t i) { return i == 0 ? v.x : i == 1 ? v.y : v.z; }

Matrix spread_about(const Vec3& mean, std::span<const Vec3> points) {
  Matrix spread{};
  for (const Vec3& p : points) {
    const Vec3 d = p - mean;
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) spread[i][j] += component(d, i) * component(d, j);
    }
  }
  return spread;
}

// Turns the axes i and j of a symmetric matrix so that its element (i, j) becomes 0 (Jacobi).
void rotate(Matrix& m, Matrix& axes, std::size_t i, std::size_t j) {
  if (m[i][j] == 0) return;
  const double theta = (m[j][j] - m[i][i]) / (2 * m[i][j]);
  const double t = std::copysign(1, theta) / (std::abs(theta) + std::hypot(1, theta));
  const double c = 1 / std::hypot(1, t);
  const double s = t * c;
  for (std::size_t k = 0; k < 3; ++k) {
    const double mi = m[k][i];
    m[k][i] = c * mi - s * m[k][j];
    m[k][j] = s * mi + c * m[k][j];
  }
  for (std::size_t k = 0; k < 3; ++k) {
    const double mi = m[i][k];
    m[i][k] = c * mi - s * m[j][k];
    m[j][k] = s * mi + c * m[j][k];
    const double ai = axes[i][k];
    axes[i][k] = c * ai - s * axes[j][k];
    axes[j][k] = s * ai + c * axes[j][k];
  }
  m[i][j] = m[j][i] = 0;
}

struct PrincipalAxis {
  double spread;
  Vec3 direction;
};

// Widest first.
std::array<PrincipalAxis, 3> principal_axes(Matrix m) {
  constexpr int kSweeps = 16;  // they converge quadratically, after five or so
  Matrix axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  for (int sweep = 0; sweep < kSweeps; ++sweep) {
    rotate(m, axes, 0, 1);
    rotate(m, axes, 0, 2);
    rotate(m, axes, 1, 2);
  }
  std::array<PrincipalAxis, 3> principal{};
  for (std::size_t i = 0; i < 3; ++i) {
    principal[i] = {m[i][i], normalised(Vec3{axes[i][0], axes[i][1], axes[i][2]})};
  }
  std::ranges::sort(principal, std::greater<>(), &PrincipalAxis::spread);
  return principal;
}

Vec3 mostly_positive(const Vec3& d) {
  double largest = d.x;
  if (std::abs(d.y) > std::abs(largest)) largest = d.y;
  if (std::abs(d.z) > std::abs(largest)) largest = d.z;
  return largest < 0 ? Vec3{} - d : d;
}

}  // namespace

std::optional<FittedLine3d> fit_line(std::span<const Vec3> points) {
  if (points.empty()) return std::nullopt;
  const double count = static_cast<double>(points.size());
  Vec3 mean;
  for (const Vec3& p : points) mean = mean + (1 / count) * p;
  const auto axes = principal_axes(spread_about(mean, points));
  const double widest = axes[0].spread;
  if (!std::isfinite(widest) || !(widest - axes[1].spread > kEqual * widest)) return std::nullopt;
  const double rest = std::max(0.0, axes[1].spread) + std::max(0.0, axes[2].spread);
  return FittedLine3d{mean, mostly_positive(axes[0].direction), std::sqrt(rest / count)};
}

std::optional<FittedLine2d> fit_line(std::span<const Vec2> points) {
  std::vector<Vec3> in_space;
  in_space.reserve(points.size());
  for (Vec2 p : points) in_space.push_back({p.x, p.y, 0});
  const auto line = fit_line(in_space);
  if (!line) return std::nullopt;
  return FittedLine2d{
      {line->point.x, line->point.y}, {line->direction.x, line->direction.y}, line->deviation};
}

}  // namespace tooldb

#pragma once

#include <cmath>
#include <vector>

#include "tooldb/geometry.h"

/// @file
/// Arithmetic of points and vectors. Nothing here knows a unit.

namespace tooldb {

using Vec2 = Point2d<double>;
using Vec3 = Vec3d<double>;
using Facet = Triangle<double>;
/// An ordered list of points, open or closed as its user says.
using Polyline = std::vector<Vec2>;

constexpr Vec2 operator+(Vec2 a, Vec2 b) { return {a.x + b.x, a.y + b.y}; }
constexpr Vec2 operator-(Vec2 a, Vec2 b) { return {a.x - b.x, a.y - b.y}; }
constexpr Vec2 operator*(double s, Vec2 v) { return {s * v.x, s * v.y}; }
constexpr double dot(Vec2 a, Vec2 b) { return a.x * b.x + a.y * b.y; }
/// Positive when `b` lies to the left of `a`.
constexpr double cross(Vec2 a, Vec2 b) { return a.x * b.y - a.y * b.x; }
inline double length(Vec2 v) { return std::hypot(v.x, v.y); }
inline double distance(Vec2 a, Vec2 b) { return length(b - a); }

constexpr Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
constexpr Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
constexpr Vec3 operator*(double s, const Vec3& v) { return {s * v.x, s * v.y, s * v.z}; }
constexpr double dot(const Vec3& a, const Vec3& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
constexpr Vec3 cross(const Vec3& a, const Vec3& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(const Vec3& v) { return std::sqrt(dot(v, v)); }

inline bool is_finite(Vec2 v) { return std::isfinite(v.x) && std::isfinite(v.y); }
inline bool is_finite(const Vec3& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// `v` made one long; zero when its length is at most `too_short`.
inline Vec3 normalised(const Vec3& v, double too_short = 0) {
  const double l = length(v);
  return l > too_short ? Vec3{v.x / l, v.y / l, v.z / l} : Vec3{};
}

/// Unit normal of the triangle a, b, c, towards the side that sees them counter-clockwise; zero
/// when the cross product of its edges is at most `too_short` long.
inline Vec3 facet_normal(const Vec3& a, const Vec3& b, const Vec3& c, double too_short = 0) {
  return normalised(cross(b - a, c - a), too_short);
}

}  // namespace tooldb

#pragma once

#include <array>

/// @file
/// Value types of geometry. Lengths carry the unit of the item that they belong to.

/// A point of a 2D profile: x is the distance from the tool axis, y the position along it.
template <class T>
struct Point2d {
  T x{};
  T y{};

  friend bool operator==(const Point2d& a, const Point2d& b) { return a.x == b.x && a.y == b.y; }
  friend bool operator!=(const Point2d& a, const Point2d& b) { return !(a == b); }
};

/// A vector or a point in space.
template <class T>
struct Vec3d {
  T x{};
  T y{};
  T z{};

  friend bool operator==(const Vec3d& a, const Vec3d& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
  }
  friend bool operator!=(const Vec3d& a, const Vec3d& b) { return !(a == b); }
};

/// One facet of a mesh: its corners counter-clockwise seen from outside, and its unit normal.
template <class T>
struct Triangle {
  Vec3d<T> a;
  Vec3d<T> b;
  Vec3d<T> c;
  Vec3d<T> n;
};

/// A rigid placement: a 4x4 matrix stored row by row, the translation in column 3.
template <class T>
class Transformation {
 public:
  /// The identity.
  constexpr Transformation() : m_{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1} {}

  /// Element at `row` and `col`, both 0..3; not checked.
  constexpr T& operator()(int row, int col) { return m_[Index(row, col)]; }
  constexpr const T& operator()(int row, int col) const { return m_[Index(row, col)]; }

  /// Matrix product: the placement `b`, seen from the frame that `a` is given in.
  friend constexpr Transformation operator*(const Transformation& a, const Transformation& b) {
    Transformation r;
    for (int i = 0; i < 4; ++i) {
      for (int j = 0; j < 4; ++j) {
        T sum{};
        for (int k = 0; k < 4; ++k) sum += a(i, k) * b(k, j);
        r(i, j) = sum;
      }
    }
    return r;
  }

  /// Exact, element by element; a NaN makes two placements unequal.
  friend constexpr bool operator==(const Transformation& a, const Transformation& b) {
    for (int i = 0; i < 16; ++i) {
      if (!(a.m_[static_cast<unsigned>(i)] == b.m_[static_cast<unsigned>(i)])) return false;
    }
    return true;
  }
  friend constexpr bool operator!=(const Transformation& a, const Transformation& b) {
    return !(a == b);
  }

 private:
  static constexpr unsigned Index(int row, int col) { return static_cast<unsigned>(4 * row + col); }

  std::array<T, 16> m_;
};

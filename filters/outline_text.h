#pragma once

#include <span>
#include <string>
#include <vector>

/// @file
/// Contour XML of imported outlines: LINE and ARC elements, each point (distance from the axis,
/// height above the tip).

namespace tooldb {

struct OutlinePoint {
  double x = 0;
  double y = 0;
};

/// Writes an outline element by element from a start point.
class OutlineText {
 public:
  explicit OutlineText(OutlinePoint start) : at_(start) {}

  /// A step to the present point writes nothing.
  void LineTo(OutlinePoint end);
  void ArcTo(OutlinePoint end, OutlinePoint center, bool counter_clockwise);

  const OutlinePoint& At() const { return at_; }
  const std::string& Text() const { return text_; }

 private:
  OutlinePoint at_;
  std::string text_;
};

/// A truncated cone of a turned body; heights go up from the tip.
struct ConeSection {
  double height = 0;
  double lower_diameter = 0;
  double upper_diameter = 0;
};

double total_height(std::span<const ConeSection> sections);
double largest_diameter(std::span<const ConeSection> sections);
/// The lowest part of `sections` that is `height` high.
std::vector<ConeSection> cut_off_at(std::span<const ConeSection> sections, double height);
/// The outline of sections that stand on each other, from (0, 0) to (0, top).
std::string stacked_outline(std::span<const ConeSection> sections);
/// The outline through `points` with straight lines.
std::string straight_outline(std::span<const OutlinePoint> points);

}  // namespace tooldb

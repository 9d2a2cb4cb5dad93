#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tooldb/geometry.h"

namespace tooldb {

/// A sheet of paper as SVG. Coordinates are millimetres of paper from the upper left corner.
class SvgPage {
 public:
  using Point = Point2d<double>;
  enum class Anchor { kStart, kMiddle, kEnd };

  SvgPage(double width, double height, std::string_view title);

  /// A text anywhere; sizes are those of its class.
  void Text(Point at, std::string_view css_class, std::string_view text,
            Anchor anchor = Anchor::kStart, double turned_deg = 0);
  void Line(Point from, Point to, std::string_view css_class);
  /// A line with an arrow head at `to`.
  void Arrow(Point from, Point to, std::string_view css_class);
  void Rectangle(Point corner, double width, double height, std::string_view css_class);
  void Circle(Point center, double radius, std::string_view css_class);
  /// Closed outlines that make one area; holes by the even-odd rule.
  void Area(std::span<const std::vector<Point>> outlines, std::string_view css_class);
  void Polyline(std::span<const Point> points, std::string_view css_class);
  /// What is drawn until `EndClip` shows only inside the rectangle.
  void BeginClip(Point corner, double width, double height);
  void EndClip();

  /// The whole document.
  std::string Finish() const;

 private:
  std::string body_;
  std::string title_;
  double width_;
  double height_;
  int clips_ = 0;
};

}  // namespace tooldb

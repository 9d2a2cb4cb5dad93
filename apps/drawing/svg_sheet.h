#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tooldb/geometry.h"

namespace tooldb {

/// A point of the paper: millimetres from its left and its upper edge.
using PaperPoint = Point2d<double>;

enum class Anchor { kStart, kMiddle, kEnd };

/// A sheet of paper that is drawn on, and its text as SVG. Its colours fit a light and a dark
/// screen; printed it is always light.
class SvgSheet {
 public:
  SvgSheet(double width, double height) : width_(width), height_(height) {}

  double Width() const { return width_; }
  double Height() const { return height_; }

  /// @param style  a class of the style sheet, see svg_sheet.cpp
  void Line(std::string_view style, PaperPoint a, PaperPoint b);
  void Polyline(std::string_view style, const std::vector<PaperPoint>& points);
  /// Closed; several polygons are one area, by the even-odd rule.
  void Area(std::string_view style, const std::vector<std::vector<PaperPoint>>& polygons);
  void Circle(std::string_view style, PaperPoint centre, double radius);
  void Rectangle(std::string_view style, PaperPoint corner, double width, double height);
  /// A filled arrow head with its point at `tip`, coming from the direction of `from`.
  void Arrow(PaperPoint tip, PaperPoint from);
  /// @param height  of the letters' body, mm
  /// @param turn    degrees, counter-clockwise about `at`
  void Text(std::string_view style, PaperPoint at, double height, Anchor anchor,
            std::string_view text, double turn = 0);

  /// What is drawn until `EndClip` is seen within a circle only.
  void BeginClip(PaperPoint centre, double radius);
  void EndClip();

  /// The document.
  std::string Document(std::string_view title) const;

 private:
  double width_;
  double height_;
  std::string body_;
  int clips_ = 0;
};

/// A text between tags; what cannot be printed is replaced.
std::string xml_escaped(std::string_view text);

/// Estimated width of a text, mm.
double text_width(std::string_view text, double height);

}  // namespace tooldb

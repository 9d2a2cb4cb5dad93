#pragma once

#include <string>
#include <vector>

#include "tooldb/geometry.h"
#include "tooldb/tool.h"

namespace tooldb {

/// A cutter, shank or holder as a drawing shows it: its section through the tool's axis, x to the
/// right and y along the axis, in the tool's unit and frame.
struct DrawnPart {
  enum class Kind { kCutter, kShank, kHolder };
  using Point = Point2d<double>;
  using Outline = std::vector<Point>;

  Kind kind = Kind::kCutter;
  std::string name;
  tdbItem* item = nullptr;        ///< borrowed from the tool
  bool turned = true;             ///< a body of revolution; else a flat part seen from above
  std::vector<Outline> outlines;  ///< closed
  std::vector<Outline> cutting;   ///< the edges that cut, both sides of a turned body
  Outline edges;                  ///< corners of the right half, for the lines across the body
  Point low;                      ///< least x and y of the outlines
  Point high;                     ///< largest x and y
};

/// What a tool looks like from the side.
struct ToolView {
  std::vector<DrawnPart> parts;
  std::vector<std::string> problems;  ///< of parts that have no outline: which, and why
};

/// The visible parts of a tool whose placements are up to date, holders first.
/// @param tolerance  chord tolerance of arcs, the tool's unit
ToolView view_of(tdbTool& tool, double tolerance);

}  // namespace tooldb

#pragma once

#include <string>
#include <vector>

#include "apps/bodies.h"
#include "apps/drawing/drawing_view.h"
#include "apps/drawing/svg_sheet.h"
#include "apps/drawing/tool_measures.h"

class tdbTool;

/// @file
/// A tool as a workshop drawing: to scale on a sheet of paper, in section on the left of its axis
/// and seen from outside on the right, with dimensions and a title block.

namespace tooldb {

/// The drawing of a tool, whose placements must be up to date, as SVG; what has no outline is left
/// out. Empty when nothing has one.
std::string drawing_of(tdbTool& tool);

void draw_parts(SvgSheet& sheet, const DrawingView& view, const std::vector<Body>& bodies);
void draw_axis(SvgSheet& sheet, const DrawingView& view);
/// @param point  in the tool's frame, x from the axis and y along it
void draw_programmed_point(SvgSheet& sheet, const DrawingView& view, const Point2d<double>& point);

/// The dimensions around a tool that stands upright, and its gauge line.
void draw_dimensions(SvgSheet& sheet, const DrawingView& view, const std::vector<Body>& bodies,
                     const Measures& measures);

/// True for a turning insert without a holder: a view of its side is drawn beside it.
bool is_lone_insert(const std::vector<Body>& bodies);

/// The dimensions of a turning insert, or of another tool in the plane of its axis.
void draw_plate_dimensions(SvgSheet& sheet, const DrawingView& view,
                           const std::vector<Body>& bodies);

/// Code, description, unit, scale, cutting data, offsets and the table of dimensions.
/// @param corner  upper left
void draw_title_block(SvgSheet& sheet, PaperPoint corner, double width, double height,
                      tdbTool& tool, const std::vector<Body>& bodies, const std::string& scale);

}  // namespace tooldb

#pragma once

#include <string>
#include <vector>

#include "apps/bodies.h"
#include "apps/drawing/drawing_view.h"
#include "apps/drawing/svg_sheet.h"

class tdbTool;

/// @file
/// A tool as a workshop drawing: to scale on a sheet of paper, in section on the left of its axis
/// and seen from outside on the right, with dimensions and a title block.

namespace tooldb {

/// The drawing of a tool, whose placements must be up to date, as SVG.
/// @param refused  filled with why parts could not be drawn, one line each
std::string drawing_of(tdbTool& tool, std::vector<std::string>& refused);

/// The bodies, the axis, the gauge line and the programmed point.
void draw_parts(SvgSheet& sheet, const DrawingView& view, const std::vector<Body>& bodies,
                tdbTool& tool);

/// The dimensions around a tool that stands upright.
void draw_dimensions(SvgSheet& sheet, const DrawingView& view, const std::vector<Body>& bodies,
                     tdbTool& tool);

/// The dimensions of a turning insert, or of another tool in the plane of its axis.
void draw_plate_dimensions(SvgSheet& sheet, const DrawingView& view,
                           const std::vector<Body>& bodies);

/// Code, description, unit, scale, cutting data, offsets and the table of dimensions.
/// @param corner  upper left
void draw_title_block(SvgSheet& sheet, PaperPoint corner, double width, double height,
                      tdbTool& tool, const std::vector<Body>& bodies, const std::string& scale);

}  // namespace tooldb

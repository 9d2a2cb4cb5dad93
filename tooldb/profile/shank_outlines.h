#pragma once

/// @file
/// The outlines of the shanks and holders, one function per kind; as of the cutters.

namespace tooldb {

class Draft;

/// Up to three cylinders, the first one tapered, with a shoulder after it.
void draw_stepped(Draft& draft);
void draw_cone(Draft& draft);
/// What stands above the head and hub of a cutter that has the same numbers.
void draw_neck_and_body(Draft& draft);
void draw_cylinder(Draft& draft);

}  // namespace tooldb

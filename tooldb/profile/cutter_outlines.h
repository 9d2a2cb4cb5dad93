#pragma once

/// @file
/// The outlines of the cutters, one function per kind. Each reads its dimensions from the draft
/// and draws on it, or has it refused.
///
/// The names of radii and heights follow those of the parameters: r and r1 are half of DIAMETER
/// and DIAMETER1, h and h1 are HEIGHT and HEIGHT1.

namespace tooldb {

class Draft;

void draw_flat(Draft& draft);
void draw_ball(Draft& draft);
void draw_ball_nose(Draft& draft);
void draw_standard(Draft& draft);
void draw_drill(Draft& draft);
void draw_insert(Draft& draft);
void draw_chamfer(Draft& draft);
void draw_double_chamfer(Draft& draft);
void draw_boring_bar(Draft& draft);
void draw_corner_rounding(Draft& draft);
void draw_tap(Draft& draft);
void draw_pieces(Draft& draft);
void draw_disc(Draft& draft);
void draw_round_rim(Draft& draft);
void draw_rim_circle(Draft& draft);
void draw_disc_drill(Draft& draft);
void draw_flanged_disc(Draft& draft);
void draw_head_and_hub(Draft& draft);

}  // namespace tooldb

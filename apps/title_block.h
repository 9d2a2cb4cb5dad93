#pragma once

#include "apps/svg_page.h"
#include "tooldb/tool.h"

namespace tooldb {

/// Height of the title block, millimetres of paper.
inline constexpr double kTitleBlockHeight = 47;

/// Draws who the tool is, how it is drawn, what it cuts with and its offsets.
void draw_title_block(SvgPage& page, SvgPage::Point corner, double width, tdbTool& tool,
                      double scale);

}  // namespace tooldb

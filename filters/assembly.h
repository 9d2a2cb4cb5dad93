#pragma once

#include <memory>
#include <string>
#include <vector>

#include "filters/cutter_plan.h"
#include "filters/outline_text.h"
#include "filters/quantity.h"
#include "tooldb/tool_parts.h"

/// @file
/// The items of a tool, made from plans. Lengths in the unit that is given along with them.

namespace tooldb {

/// What a file says about the part above the cutter; heights above the tip, 0: not given.
struct ShankSize {
  double diameter = 0;
  double overall = 0;  ///< height of the shank's top
  double neck_diameter = 0;
  double neck_end = 0;
  std::vector<ConeSection> shaft;  ///< from the neck's end upwards; usually none
};

Transformation<double> raised(double z);

/// A cutter with its shank, both at the tip. A plan that makes no outline is replaced by a plain
/// cylinder, with a remark in `plan`; one without an outline of any kind gives an empty 2D cutter.
std::unique_ptr<tdbCuttingTool> make_cutting_tool(CutterPlan& plan, const ShankSize& shank,
                                                  LengthUnit unit);
/// An insert: the plan's kind is one of the inserts.
std::unique_ptr<tdbCuttingTool> make_insert(CutterPlan& plan, const std::string& shape,
                                            LengthUnit unit);
/// A cutter drawn in its plane by `plan.outline`, given its thickness.
std::unique_ptr<tdbCuttingTool> make_extruded_cutter(const CutterPlan& plan, LengthUnit unit);

/// A turned holder, its nose at (0, 0) of its own frame.
std::unique_ptr<tdbToolHolder> make_holder(const std::string& name, const std::string& outline,
                                           LengthUnit unit);
/// The library component that holds one holder; the marks of a definition are set.
std::unique_ptr<tdbToolComponent> make_holder_component(const std::string& code,
                                                        std::unique_ptr<tdbToolHolder> holder);
/// A use of a component in a tool, with copies of its members.
std::unique_ptr<tdbToolComponent> make_component_use(const tdbToolComponent& component);

}  // namespace tooldb

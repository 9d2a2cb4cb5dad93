#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// @file
/// From the dimensions that tool files give to the named dimensions of a cutter's outline. Lengths
/// in the tool's unit, angles in degrees.

namespace tooldb {

/// Kinds of cutting tool, as `tdbCuttingTool::GetTypeName` names them.
enum class CuttingKind {
  kFlatEnd = 0,
  kLollipop = 1,
  kProfile2d = 2,
  kBullNose = 3,
  kStandard = 4,
  kChamfer1 = 5,
  kChamfer2 = 6,
  kCornerRounding = 7,
  kDrill = 10,
  kProbe = 11,
  kDisc = 12,
  kTap = 15,
  kBore = 16,
  kInsertRhombic = 17,
  kInsertParallelogram = 18,
  kInsertTriangle = 19,
  kInsertPentagon = 20,
  kInsertHexagon = 21,
  kInsertOctagon = 22,
  kInsertTrigon = 23,
  kInsertRound = 24,
};

/// What a file says about a cutter; 0 stands for "not given".
struct CutterSize {
  double diameter = 0;
  double cutting_length = 0;
  double corner_radius = 0;
  double tip_diameter = 0;
  double side_angle = 0;   ///< of the flank from the axis; for a dovetail it narrows upwards
  double point_angle = 0;  ///< total
  double pitch = 0;
  double lead_length = 0;  ///< of a tap
  double neck_diameter = 0;
  double neck_end = 0;          ///< height above the tip
  double largest_diameter = 0;  ///< where it is not `diameter`
  double profile_radius = 0;    ///< of a flank or an end that is an arc
  double crest = 0;             ///< width of the flat of a tooth
  int rows = 0;                 ///< of a thread mill
};

/// A cutter ready to be made: its kind, and either named dimensions or an outline.
struct CutterPlan {
  CuttingKind kind = CuttingKind::kFlatEnd;
  std::vector<std::pair<std::string_view, double>> dimensions;
  std::string outline;
  double top = 0;                    ///< height above the tip at which the shank begins
  double top_diameter = 0;           ///< width there
  std::vector<std::string> remarks;  ///< what was changed to make an outline, and why
};

/// The radius, at most `most`; the plan's remarks tell of a cut.
double checked_radius(double radius, double most, CutterPlan& plan);

/// A recipe turns sizes, whose diameter is positive, into a plan.
using CutterRecipe = CutterPlan (*)(const CutterSize& size);

/// The plain cylinder: flat end mills, and whatever has no outline of its own.
CutterPlan plain_cutter(const CutterSize& size);
/// A ball when the radius is half the diameter; without a radius a flat one.
CutterPlan bull_nose_cutter(const CutterSize& size);
/// Where the cone is higher than the cutting length, the cutting length grows.
CutterPlan pointed_cutter(const CutterSize& size);
/// Where the cone is higher than the cutting length, the diameter is the one that it reaches.
CutterPlan chamfer_cutter(const CutterSize& size);
/// Flat, with a corner radius, or tapered from the tip diameter `diameter`.
CutterPlan face_cutter(const CutterSize& size);
/// At least `largest_diameter` wide, and as wide as tip and radius need.
CutterPlan corner_rounding_cutter(const CutterSize& size);
CutterPlan disc_cutter(const CutterSize& size);
CutterPlan dovetail_cutter(const CutterSize& size);
CutterPlan lollipop_cutter(const CutterSize& size);
/// `diameter` where tip plane and flank meet.
CutterPlan tapered_cutter(const CutterSize& size);
/// `diameter` of the ball at the tip.
CutterPlan tapered_ball_cutter(const CutterSize& size);
CutterPlan drill_cutter(const CutterSize& size);
CutterPlan reamer_cutter(const CutterSize& size);
CutterPlan tap_cutter(const CutterSize& size);
CutterPlan thread_mill_cutter(const CutterSize& size);
CutterPlan barrel_cutter(const CutterSize& size);
CutterPlan lens_cutter(const CutterSize& size);
CutterPlan boring_bar_cutter(const CutterSize& size);
CutterPlan probe_cutter(const CutterSize& size);

}  // namespace tooldb

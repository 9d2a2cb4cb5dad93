#include "tooldb/profile/cutter_outlines.h"
#include "tooldb/profile/parameter_ranges.h"

namespace tooldb {
namespace {

constexpr std::string_view kCutting = "cutting diameter";
constexpr std::string_view kCuttingLength = "cutting length";
constexpr std::string_view kHeight = "height";
constexpr std::string_view kCorner = "corner radius";
constexpr std::string_view kPoint = "point angle";
constexpr std::string_view kOrigin = "programmed point";

constexpr auto kCutters = std::to_array<BodyType>({
    {0, {diameter("DIAMETER", "50", kCutting), height("HEIGHT", "50", kCuttingLength)}, draw_flat},
    {1,
     {diameter("DIAMETER", "20", kCutting), choice("SPHERIC_TCPTYPE", kOrigin, kTipOrCentre)},
     draw_ball},
    {2,
     {diameter("DIAMETER", "40", kCutting), height("HEIGHT", "40", kCuttingLength),
      radius("FILLET", "", kCorner), choice("SPHERIC_TCPTYPE", kOrigin, kTipOrCentre)},
     draw_ball_nose},
    {3,
     {diameter("DIAMETER", "40", kCutting), height("HEIGHT", "40", kCuttingLength),
      from_axis("ANGLE", "0", "taper angle", kTaper), from_face("ANGLE1", "0", "tip angle"),
      radius("FILLET", "0", kCorner), choice("STANDARD_TCPTYPE", kOrigin, kTipCentreOrTop)},
     draw_standard},
    {4,
     {diameter("DIAMETER", "40", kCutting), height("HEIGHT", "100", kCuttingLength),
      total_angle("ANGLE", "118", kPoint)},
     draw_drill},
    {7,
     {diameter_or_none("DIAMETER", "12.7", "inscribed circle"),
      height("HEIGHT", "4.76", "thickness"), radius("FILLET", "0.8", kCorner),
      total_angle("ANGLE", "", "included angle", kUnchecked),
      height_or_none("LENGTH", "", "edge length"), text("INSERT_SHAPE", "", "shape letter")},
     draw_insert},
    {9,
     {diameter("DIAMETER", "20", kCutting), diameter_or_none("DIAMETER1", "4", "tip diameter"),
      height("HEIGHT", "20", kHeight), from_axis("ANGLE", "45", "chamfer angle", kCone)},
     draw_chamfer},
    {10,
     {diameter("DIAMETER", "20", kCutting), diameter_or_none("DIAMETER1", "10", "tip diameter"),
      diameter("DIAMETER2", "10", "neck diameter"), height("HEIGHT", "12", kHeight),
      height_or_none("HEIGHT1", "2", "land"),
      from_axis("ANGLE1", "45", "front chamfer angle", kCone),
      from_axis("ANGLE2", "45", "back chamfer angle", kCone)},
     draw_double_chamfer},
    {11,
     {diameter("DIAMETER", "30", kCutting), diameter("DIAMETER1", "24", "bar diameter"),
      height("HEIGHT", "40", kHeight), height("HEIGHT1", "4", "head height"),
      from_face("ANGLE", "45", "back angle"), radius("FILLET", "0.4", kCorner)},
     draw_boring_bar},
    {12,
     {diameter("DIAMETER", "20", kCutting), diameter("DIAMETER1", "6", "tip diameter"),
      height("HEIGHT", "20", kHeight), height_or_none("HEIGHT1", "0", "pilot height"),
      radius("FILLET", "5", "rounding radius", kPositive)},
     draw_corner_rounding},
    {13,
     {diameter("DIAMETER", "10", kCutting), diameter_or_none("DIAMETER1", "8", "lead end diameter"),
      height("HEIGHT", "25", kCuttingLength), height_or_none("HEIGHT1", "4", "lead length")},
     draw_tap},
    {14,
     {text("PIECE", "10 10 20;30 20 20", "pieces"), height_or_none("LENGTH", "", kHeight)},
     draw_pieces},
    {16,
     {diameter("DIAMETER", "80", kCutting), height("HEIGHT", "4", "width"),
      radius("FILLET", "0", kCorner)},
     draw_disc},
    {17,
     {diameter("DIAMETER", "50", kCutting), height("HEIGHT", "20", kHeight),
      radius("FILLET", "5", "rim radius", kPositive)},
     draw_round_rim},
    {18,
     {diameter("DIAMETER", "50", kCutting), diameter("DIAMETER1", "30", "rim circle diameter"),
      height("HEIGHT", "20", kHeight)},
     draw_rim_circle},
    {19,
     {diameter("DIAMETER", "60", kCutting), diameter("DIAMETER1", "10", "drill diameter"),
      height("HEIGHT", "10", "disc width"), height("HEIGHT1", "20", "drill length"),
      total_angle("ANGLE", "118", kPoint)},
     draw_disc_drill},
    {22,
     {diameter("DIAMETER", "100", kCutting),
      diameter_or_none("DIAMETER1", "30", "lower flange diameter"),
      diameter_or_none("DIAMETER2", "40", "upper flange diameter"), height("HEIGHT", "3", "width"),
      height_or_none("HEIGHT1", "5", "lower flange height"),
      height_or_none("HEIGHT2", "8", "upper flange height"), radius("FILLET", "0", kCorner)},
     draw_flanged_disc},
    {23,
     {diameter("DIAMETER", "50", kCutting), diameter_or_none("DIAMETER3", "40", "hub diameter"),
      height("HEIGHT", "100", "overall length"), height("HEIGHT1", "20", "head height"),
      height_or_none("HEIGHT3", "2", "hub height"), from_face("ANGLE1", "0", "tip angle"),
      radius("FILLET", "0", kCorner), radius("FILLET2", "0", "upper corner radius"),
      radius("FILLET3", "0", "inner corner radius"),
      choice("STANDARD_TCPTYPE", kOrigin, kTipCentreOrTop)},
     draw_head_and_hub},
});

}  // namespace

std::span<const BodyType> cutter_types() { return kCutters; }

}  // namespace tooldb

#include "tooldb/profile/parameter_ranges.h"
#include "tooldb/profile/shank_outlines.h"

namespace tooldb {
namespace {

/// The defaults of a stepped body, in the order of its parameters.
using SteppedDefaults = std::array<std::string_view, 8>;

constexpr BodyType stepped(int code, const SteppedDefaults& d) {
  return {code,
          {diameter("DIAMETER", d[0], "shank diameter at the cutter"),
           height_or_none("HEIGHT", d[1], "length of the first section"),
           from_face("ANGLE", d[2], "shoulder angle"),
           diameter_or_none("DIAMETER2", d[3], "diameter of the second section"),
           height_or_none("HEIGHT2", d[4], "length of the second section"),
           from_axis("ANGLE2", d[5], "taper angle", kTaper),
           diameter_or_none("DIAMETER3", d[6], "collar diameter"),
           height_or_none("HEIGHT3", d[7], "collar length")},
          draw_stepped};
}

constexpr BodyType cone(std::string_view height_text, std::string_view upper_diameter) {
  return {1,
          {diameter_or_none("DIAMETER", "40", "lower diameter"),
           height("HEIGHT", height_text, "height of the cone"),
           diameter_or_none("DIAMETER2", upper_diameter, "upper diameter"),
           height_or_none("HEIGHT2", "0", "length above the cone")},
          draw_cone};
}

constexpr auto kShanks = std::to_array<BodyType>({
    stepped(0, {"40", "30", "0", "0", "30", "0", "0", "0"}),
    cone("30", "50"),
    stepped(6, {"20", "40", "0", "0", "30", "0", "0", "0"}),
    stepped(7, {"10", "20", "45", "20", "40", "0", "0", "0"}),
    stepped(8, {"24", "60", "45", "32", "40", "0", "0", "0"}),
    stepped(9, {"20", "40", "0", "0", "30", "0", "0", "0"}),
    stepped(10, {"8", "25", "45", "10", "40", "0", "8", "11"}),
    stepped(11, {"22", "50", "0", "0", "30", "0", "0", "0"}),
    stepped(12, {"40", "30", "0", "50", "30", "0", "0", "0"}),
    stepped(13, {"20", "40", "0", "0", "30", "0", "0", "0"}),
    stepped(14, {"20", "50", "0", "0", "30", "0", "0", "0"}),
    stepped(15, {"25", "50", "0", "0", "30", "0", "0", "0"}),
    {16,
     {diameter("DIAMETER1", "20", "neck diameter"), diameter("DIAMETER2", "40", "body diameter"),
      diameter_or_none("DIAMETER3", "40", "hub diameter"),
      height("HEIGHT", "100", "overall length"), height_or_none("HEIGHT1", "20", "head height"),
      height_or_none("HEIGHT2", "20", "body length"), height_or_none("HEIGHT3", "2", "hub height"),
      from_axis("ANGLE2", "20", "neck angle", kAnyAngle)},
     draw_neck_and_body},
});

constexpr auto kHolders = std::to_array<BodyType>({
    {0,
     {diameter("DIAMETER", "50", "holder diameter"), height("HEIGHT", "80", "holder length")},
     draw_cylinder},
    cone("80", "63"),
});

}  // namespace

std::span<const BodyType> shank_types() { return kShanks; }
std::span<const BodyType> holder_types() { return kHolders; }

}  // namespace tooldb

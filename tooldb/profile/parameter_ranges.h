#pragma once

#include "tooldb/profile/body_types.h"

/// @file
/// What the parameters of bodies have in common: their ranges, and short names of their kinds.

namespace tooldb {

/// The largest number that a parameter may have, either sign.
inline constexpr double kLargestParameter = 1e6;

inline constexpr Range kPositive{0, kLargestParameter, false, true, "must be positive"};
inline constexpr Range kNotNegative{0, kLargestParameter, true, true, "must not be negative"};
inline constexpr Range kTaper{-90, 90, false, false, "must lie between -90 and 90 degrees"};
inline constexpr Range kSlope{0, 90, true, false, "must be at least 0 and below 90 degrees"};
inline constexpr Range kCone{0, 90, false, true, "must be above 0 and at most 90 degrees"};
inline constexpr Range kPointAngle{0, 180, false, true, "must be above 0 and at most 180 degrees"};
inline constexpr Range kTipOrCentre{0, 1, true, true, "must be 0 or 1"};
inline constexpr Range kTipCentreOrTop{0, 2, true, true, "must be 0, 1 or 2"};
inline constexpr Range kAnyAngle{-360, 360, true, true, "must be an angle in degrees"};
/// Of parameters that the outline itself looks at, if it does at all.
inline constexpr Range kUnchecked{0, 0, true, true, ""};

constexpr ParameterRow diameter(std::string_view name, std::string_view standard,
                                std::string_view meaning) {
  return {name, standard, meaning, tdbDimension::Kind::kDiameter, kPositive};
}
constexpr ParameterRow diameter_or_none(std::string_view name, std::string_view standard,
                                        std::string_view meaning) {
  return {name, standard, meaning, tdbDimension::Kind::kDiameter, kNotNegative};
}
constexpr ParameterRow height(std::string_view name, std::string_view standard,
                              std::string_view meaning) {
  return {name, standard, meaning, tdbDimension::Kind::kLength, kPositive};
}
constexpr ParameterRow height_or_none(std::string_view name, std::string_view standard,
                                      std::string_view meaning) {
  return {name, standard, meaning, tdbDimension::Kind::kLength, kNotNegative};
}
constexpr ParameterRow radius(std::string_view name, std::string_view standard,
                              std::string_view meaning, const Range& range = kNotNegative) {
  return {name, standard, meaning, tdbDimension::Kind::kRadius, range};
}
constexpr ParameterRow from_axis(std::string_view name, std::string_view standard,
                                 std::string_view meaning, const Range& range) {
  return {name, standard, meaning, tdbDimension::Kind::kAngleFromAxis, range};
}
constexpr ParameterRow from_face(std::string_view name, std::string_view standard,
                                 std::string_view meaning) {
  return {name, standard, meaning, tdbDimension::Kind::kAngleFromFace, kSlope};
}
constexpr ParameterRow total_angle(std::string_view name, std::string_view standard,
                                   std::string_view meaning, const Range& range = kPointAngle) {
  return {name, standard, meaning, tdbDimension::Kind::kAngleTotal, range};
}
constexpr ParameterRow choice(std::string_view name, std::string_view meaning, const Range& range) {
  return {name, "0", meaning, tdbDimension::Kind::kChoice, range};
}
constexpr ParameterRow text(std::string_view name, std::string_view standard,
                            std::string_view meaning) {
  return {name, standard, meaning, tdbDimension::Kind::kText, kUnchecked};
}

}  // namespace tooldb

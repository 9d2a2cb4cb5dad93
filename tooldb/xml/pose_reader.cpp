#include "tooldb/xml/pose_reader.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "geom/euler_angles.h"
#include "geom/number_text.h"
#include "tooldb/model/text.h"
#include "tooldb/xml/grammar.h"

namespace tooldb {
namespace {

constexpr std::array kPoseAttributes{att::kPosX, att::kPosY, att::kPosZ,
                                     att::kRotZ, att::kRotY, att::kRotX};
constexpr std::array kPoseChildren{tag::kTransformation, tag::kTranslation, tag::kRotation,
                                   tag::kQuaternion,     tag::kAlpha,       tag::kBeta};

std::optional<Transformation<double>> from_quaternion(std::string_view text) {
  const Vec3d<double> v = three_numbers(text);
  const std::string_view whole = trimmed(text);
  const double w = leading_number(whole.substr(whole.find_last_of(kBlanks) + 1));
  const double square = v.x * v.x + v.y * v.y + v.z * v.z + w * w;
  if (!(square > 0) || !std::isfinite(square)) return std::nullopt;
  const double s = 2 / square;
  Transformation<double> m;
  m(0, 0) = 1 - s * (v.y * v.y + v.z * v.z);
  m(0, 1) = s * (v.x * v.y - v.z * w);
  m(0, 2) = s * (v.x * v.z + v.y * w);
  m(1, 0) = s * (v.x * v.y + v.z * w);
  m(1, 1) = 1 - s * (v.x * v.x + v.z * v.z);
  m(1, 2) = s * (v.y * v.z - v.x * w);
  m(2, 0) = s * (v.x * v.z - v.y * w);
  m(2, 1) = s * (v.y * v.z + v.x * w);
  m(2, 2) = 1 - s * (v.x * v.x + v.y * v.y);
  return m;
}

// What has been found among the children of one element.
struct PoseParts {
  Vec3d<double> origin;
  EulerAngles angles;
  std::optional<Transformation<double>> rotation;  // of a quaternion, instead of the angles

  Transformation<double> Joined() const {
    if (!rotation) return join_zyx(angles, origin);
    Transformation<double> m = *rotation;
    m(0, 3) = origin.x;
    m(1, 3) = origin.y;
    m(2, 3) = origin.z;
    return m;
  }
};

void take(const Element& child, std::string_view name, PoseParts& parts) {
  const std::string text = text_of(child);
  if (name == tag::kTranslation) {
    parts.origin = three_numbers(text);
  } else if (name == tag::kRotation) {
    const Vec3d<double> angles = three_numbers(text);
    parts.angles = {angles.x, angles.y, angles.z};
  } else if (name == tag::kQuaternion) {
    parts.rotation = from_quaternion(text);
  } else if (name == tag::kAlpha) {
    parts.angles.x = leading_number(text);
  } else if (name == tag::kBeta) {
    parts.angles.y = leading_number(text);
  }
}

// The children of the element itself, or of the wrapper in it.
const Element& pose_holder(const Element& element) {
  for (auto* child = element.FirstChildElement(); child; child = child->NextSiblingElement()) {
    if (is_name(child->Name(), tag::kTransformation)) return *child;
  }
  return element;
}

}  // namespace

bool is_pose_child(std::string_view name) {
  return std::ranges::find(kPoseChildren, name) != kPoseChildren.end();
}

std::optional<Transformation<double>> pose_from_attributes(const Element& element) {
  const bool any = std::ranges::any_of(
      kPoseAttributes, [&element](std::string_view name) { return has_attribute(element, name); });
  if (!any) return std::nullopt;
  return join_zyx(
      {number(element, att::kRotZ), number(element, att::kRotY), number(element, att::kRotX)},
      {number(element, att::kPosX), number(element, att::kPosY), number(element, att::kPosZ)});
}

std::optional<Transformation<double>> pose_from_children(const Element& element) {
  PoseParts parts;
  bool any = false;
  for (auto* child = pose_holder(element).FirstChildElement(); child;
       child = child->NextSiblingElement()) {
    const std::string name = upper_name(*child);
    any = any || is_pose_child(name);
    take(*child, name, parts);
  }
  if (!any) return std::nullopt;
  return parts.Joined();
}

}  // namespace tooldb

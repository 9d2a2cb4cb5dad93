#include <tinyxml2.h>

#include <array>

#include "geom/number_text.h"
#include "tooldb/model/text.h"
#include "tooldb/profile/contour_text.h"

namespace tooldb {
namespace {

using tinyxml2::XMLElement;
using tinyxml2::XMLNode;

std::optional<Vec2> parse_point(const char* text) {
  if (text == nullptr) return std::nullopt;
  const std::string_view pair = trimmed(text);
  const auto blank = pair.find_first_of(kBlanks);
  if (blank == std::string_view::npos) return std::nullopt;
  const auto x = whole_number(pair.substr(0, blank));
  const auto y = whole_number(pair.substr(blank));
  if (!x || !y) return std::nullopt;
  return Vec2{*x, *y};
}

bool is_ignored(const XMLNode& node) {
  return node.ToComment() != nullptr || node.ToDeclaration() != nullptr;
}

/// The children of an element, each of them at most once.
class Points {
 public:
  /// False when the element has any other child than START, END and CENTER, or one twice.
  bool Read(const XMLElement& element) {
    for (const XMLNode* node = element.FirstChild(); node != nullptr; node = node->NextSibling()) {
      if (!is_ignored(*node) && !ReadOne(node->ToElement())) return false;
    }
    return true;
  }
  const std::optional<Vec2>& Start() const { return points_[0]; }
  const std::optional<Vec2>& End() const { return points_[1]; }
  const std::optional<Vec2>& Center() const { return points_[2]; }

 private:
  static constexpr std::array<std::string_view, 3> kNames{"START", "END", "CENTER"};

  bool ReadOne(const XMLElement* child) {
    if (child == nullptr) return false;
    for (std::size_t i = 0; i < kNames.size(); ++i) {
      if (child->Name() != kNames[i]) continue;
      const bool only_text = child->FirstChild() == child->LastChild();
      if (points_[i] || !only_text) return false;
      points_[i] = parse_point(child->GetText());
      return points_[i].has_value();
    }
    return false;
  }

  std::array<std::optional<Vec2>, 3> points_;
};

std::optional<SegmentKind> segment_kind(const XMLElement& element) {
  const std::string_view name = element.Name();
  if (name == "LINE") return SegmentKind::kLine;
  const char* direction = element.Attribute("DIR");
  if (name != "ARC" || direction == nullptr) return std::nullopt;
  if (direction == std::string_view("CW")) return SegmentKind::kCw;
  if (direction == std::string_view("CCW")) return SegmentKind::kCcw;
  return std::nullopt;
}

std::optional<ContourSegment> parse_segment(const XMLElement* element) {
  if (element == nullptr) return std::nullopt;
  const auto kind = segment_kind(*element);
  Points points;
  if (!kind || !points.Read(*element) || !points.Start() || !points.End()) return std::nullopt;
  if ((*kind == SegmentKind::kLine) == points.Center().has_value()) return std::nullopt;
  return ContourSegment{*points.Start(), *points.End(), points.Center().value_or(Vec2{}), *kind};
}

}  // namespace

std::optional<std::vector<ContourSegment>> parse_contour(std::string_view text) {
  tinyxml2::XMLDocument document;
  if (document.Parse(text.data(), text.size()) != tinyxml2::XML_SUCCESS) return std::nullopt;
  std::vector<ContourSegment> segments;
  for (const XMLNode* node = document.FirstChild(); node != nullptr; node = node->NextSibling()) {
    if (is_ignored(*node)) continue;
    const auto segment = parse_segment(node->ToElement());
    if (!segment) return std::nullopt;
    segments.push_back(*segment);
  }
  if (segments.empty()) return std::nullopt;
  return segments;
}

}  // namespace tooldb

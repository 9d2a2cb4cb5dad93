#include "tooldb/profile/body_outline.h"

#include <algorithm>

#include "tooldb/model/text.h"
#include "tooldb/profile/contour_text.h"
#include "tooldb/profile/insert_outline.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

const BodyType* row_of(std::span<const BodyType> types, int code) {
  const auto row = std::ranges::find(types, code, &BodyType::code);
  return row == types.end() ? nullptr : &*row;
}

Draft draft_of(const tdbItem& item, const BodyType& type) {
  Draft draft(item, type);
  if (!draft.IsRefused()) type.draw(draft);
  return draft;
}

// Bodies that carry a contour of their own that is extruded.
constexpr BodyCode kExtruded[] = {
    {BodyClass::kCutter, 8}, {BodyClass::kShank, 5}, {BodyClass::kHolder, 4}};
constexpr int kInsertCutter = 7;
constexpr int kCentreTool = 25;

Outline text_outline(const tdbItem& item) {
  if (trimmed(item.GetProfileXml()).empty()) return {{}, {}, "PROFILE is empty"};
  auto segments = parse_contour(item.GetProfileXml());
  if (!segments) return {{}, {}, "PROFILE is not a contour of LINE and ARC elements"};
  return {*std::move(segments), {}, {}};
}

}  // namespace

BodyClass body_class(const tdbItem& item) {
  if (dynamic_cast<const tdbToolCutter*>(&item) != nullptr) return BodyClass::kCutter;
  if (dynamic_cast<const tdbToolShank*>(&item) != nullptr) return BodyClass::kShank;
  if (dynamic_cast<const tdbToolHolder*>(&item) != nullptr) return BodyClass::kHolder;
  return BodyClass::kNone;
}

BodyCode body_code(const tdbItem& item) { return {body_class(item), item.GetType()}; }

bool is_model(const tdbItem& item) {
  // NOLINTNEXTLINE(*-const-cast): the interface lacks the const, the answer changes nothing.
  return const_cast<tdbItem&>(item).IsSTL();
}

const BodyType* body_type(const tdbItem& item) {
  switch (body_class(item)) {
    case BodyClass::kCutter:
      return row_of(cutter_types(), item.GetType());
    case BodyClass::kShank:
      return row_of(shank_types(), item.GetType());
    case BodyClass::kHolder:
      return row_of(holder_types(), item.GetType());
    case BodyClass::kNone:
      break;
  }
  return nullptr;
}

Outline body_outline(const tdbItem& item) {
  if (is_model(item)) return {{}, {}, "the shape is a model file"};
  const BodyType* type = body_type(item);
  return type == nullptr ? text_outline(item) : draft_of(item, *type).Take();
}

std::vector<tdbDimension> body_dimensions(const tdbItem& item) {
  const BodyType* type = body_type(item);
  return type == nullptr ? std::vector<tdbDimension>() : draft_of(item, *type).Dimensions();
}

bool build_outline(tdbItem& item) {
  if (body_type(item) == nullptr) return !trimmed(item.GetProfileXml()).empty();
  const Outline outline = body_outline(item);
  if (!outline.Stands()) return false;
  item.SetProfileXml(contour_text(outline.segments).c_str());
  return true;
}

Bounds bounds_of(const Outline& outline) {
  const Vec2 first = outline.segments.front().start;
  Bounds bounds{first, first};
  for (const ContourSegment& segment : outline.segments) {
    // Few chords are enough: an arc is cut where it reaches farthest.
    for (const Vec2 p : flatten({&segment, 1}, distance(segment.start, segment.center))) {
      bounds.low = {std::min(bounds.low.x, p.x), std::min(bounds.low.y, p.y)};
      bounds.high = {std::max(bounds.high.x, p.x), std::max(bounds.high.y, p.y)};
    }
  }
  return bounds;
}

bool is_extruded(const tdbItem& item) {
  const BodyCode code = body_code(item);
  if (code == BodyCode{BodyClass::kCutter, kInsertCutter}) return insert_shape(item) != kCentreTool;
  return std::ranges::find(kExtruded, code) != std::end(kExtruded);
}

}  // namespace tooldb

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

enum class BodyClass { kNone, kCutter, kShank, kHolder };

BodyClass body_class(const tdbItem& item) {
  if (dynamic_cast<const tdbToolCutter*>(&item) != nullptr) return BodyClass::kCutter;
  if (dynamic_cast<const tdbToolShank*>(&item) != nullptr) return BodyClass::kShank;
  if (dynamic_cast<const tdbToolHolder*>(&item) != nullptr) return BodyClass::kHolder;
  return BodyClass::kNone;
}

Draft draft_of(const tdbItem& item, const BodyType& type) {
  Draft draft(item, type);
  if (!draft.IsRefused()) type.draw(draft);
  return draft;
}

// Bodies that carry a contour of their own that is extruded.
struct ExtrudedType {
  BodyClass body;
  int code;
};
constexpr ExtrudedType kExtruded[] = {
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

bool is_body(const tdbItem& item) { return body_class(item) != BodyClass::kNone; }

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

bool is_extruded(const tdbItem& item) {
  const BodyClass body = body_class(item);
  if (body == BodyClass::kCutter && item.GetType() == kInsertCutter) {
    return insert_shape(item) != kCentreTool;
  }
  return std::ranges::any_of(kExtruded, [&](const ExtrudedType& row) {
    return row.body == body && row.code == item.GetType();
  });
}

}  // namespace tooldb

#include "tooldb/profile/contour_text.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "geom/number_text.h"

namespace tooldb {
namespace {

/// The element of a kind of segment. The blank before the end of the ARC tag is part of the format.
struct SegmentTags {
  SegmentKind kind;
  std::string_view open;
  std::string_view close;
};

constexpr auto kSegmentTags = std::to_array<SegmentTags>({
    {SegmentKind::kLine, "<LINE>", "</LINE>"},
    {SegmentKind::kCw, "<ARC DIR=\"CW\" >", "</ARC>"},
    {SegmentKind::kCcw, "<ARC DIR=\"CCW\" >", "</ARC>"},
});

// Below these a number is written as 0: what rounding leaves of it, and never "-0".
constexpr double kGeneralZero = 1e-9;
constexpr double kFixedZero = 5e-7;

void append_number(std::string& out, double value, char form) {
  if (form == 'g') {
    append_general(out, std::abs(value) < kGeneralZero ? 0 : value);
  } else {
    append_fixed(out, std::abs(value) < kFixedZero ? 0 : value);
  }
}

std::string point_text(Vec2 point, char form) {
  std::string text;
  append_number(text, point.x, form);
  text += ' ';
  append_number(text, point.y, form);
  return text;
}

// Nothing for a segment whose ends are written alike.
void append_segment(std::string& out, const ContourSegment& segment, char form) {
  const std::string start = point_text(segment.start, form);
  const std::string end = point_text(segment.end, form);
  if (start == end) return;
  const SegmentTags& tags = *std::ranges::find(kSegmentTags, segment.kind, &SegmentTags::kind);
  out.append(tags.open).append("<START>").append(start).append("</START><END>").append(end);
  out.append("</END>");
  if (segment.kind != SegmentKind::kLine) {
    out.append("<CENTER>").append(point_text(segment.center, form)).append("</CENTER>");
  }
  out.append(tags.close);
}

}  // namespace

std::string contour_text(std::span<const ContourSegment> segments) {
  std::string text;
  for (const ContourSegment& segment : segments) append_segment(text, segment, 'g');
  return text;
}

std::string fixed_line_text(std::span<const Vec2> points) {
  std::string text;
  for (std::size_t i = 1; i < points.size(); ++i) {
    append_segment(text, {points[i - 1], points[i], {}, SegmentKind::kLine}, 'f');
  }
  return text;
}

}  // namespace tooldb

#include "tooldb/profile/contour_text.h"

#include <array>
#include <cmath>

#include "geom/number_text.h"

namespace tooldb {
namespace {

/// How a kind of element is written: "%g" and "%f" stand for the numbers of START, END and CENTER.
/// The blank before the end of the ARC tag is part of the format.
struct Template {
  SegmentKind kind;
  std::string_view text;
};

constexpr auto kTemplates = std::to_array<Template>({
    {SegmentKind::kLine, "<LINE><START>%g %g</START><END>%g %g</END></LINE>"},
    {SegmentKind::kCw,
     "<ARC DIR=\"CW\" ><START>%g %g</START><END>%g %g</END><CENTER>%g %g</CENTER></ARC>"},
    {SegmentKind::kCcw,
     "<ARC DIR=\"CCW\" ><START>%g %g</START><END>%g %g</END><CENTER>%g %g</CENTER></ARC>"},
});
constexpr std::string_view kFixedLine = "<LINE><START>%f %f</START><END>%f %f</END></LINE>";

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

void append_filled(std::string& out, std::string_view form, const ContourSegment& s) {
  const double numbers[] = {s.start.x, s.start.y, s.end.x, s.end.y, s.center.x, s.center.y};
  for (const double number : numbers) {
    const auto hole = form.find('%');
    if (hole == std::string_view::npos) break;
    out.append(form.substr(0, hole));
    append_number(out, number, form[hole + 1]);
    form.remove_prefix(hole + 2);
  }
  out.append(form);
}

std::string point_text(Vec2 point, char form) {
  std::string text;
  append_number(text, point.x, form);
  text += ' ';
  append_number(text, point.y, form);
  return text;
}

std::string_view template_of(SegmentKind kind) {
  for (const Template& row : kTemplates) {
    if (row.kind == kind) return row.text;
  }
  return {};
}

}  // namespace

std::string contour_text(std::span<const ContourSegment> segments) {
  std::string text;
  for (const ContourSegment& segment : segments) {
    if (point_text(segment.start, 'g') == point_text(segment.end, 'g')) continue;
    append_filled(text, template_of(segment.kind), segment);
  }
  return text;
}

std::string fixed_line_text(std::span<const Vec2> points) {
  std::string text;
  for (std::size_t i = 1; i < points.size(); ++i) {
    if (point_text(points[i - 1], 'f') == point_text(points[i], 'f')) continue;
    append_filled(text, kFixedLine, {points[i - 1], points[i], {}, SegmentKind::kLine});
  }
  return text;
}

}  // namespace tooldb

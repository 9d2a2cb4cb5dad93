#include "filters/outline_text.h"

#include <algorithm>

#include "filters/quantity.h"

namespace tooldb {
namespace {

std::string point_text(OutlinePoint p) { return number_text(p.x) + " " + number_text(p.y); }

}  // namespace

void OutlineText::LineTo(OutlinePoint end) {
  const std::string from = point_text(at_);
  const std::string to = point_text(end);
  at_ = end;
  if (from == to) return;
  text_ += "<LINE><START>" + from + "</START><END>" + to + "</END></LINE>";
}

void OutlineText::ArcTo(OutlinePoint end, OutlinePoint center, bool counter_clockwise) {
  text_ += counter_clockwise ? "<ARC DIR=\"CCW\" >" : "<ARC DIR=\"CW\" >";
  text_ += "<START>" + point_text(at_) + "</START><END>" + point_text(end) + "</END><CENTER>" +
           point_text(center) + "</CENTER></ARC>";
  at_ = end;
}

double total_height(std::span<const ConeSection> sections) {
  double height = 0;
  for (const ConeSection& section : sections) height += section.height;
  return height;
}

double largest_diameter(std::span<const ConeSection> sections) {
  double diameter = 0;
  for (const ConeSection& section : sections) {
    diameter = std::max({diameter, section.lower_diameter, section.upper_diameter});
  }
  return diameter;
}

std::vector<ConeSection> cut_off_at(std::span<const ConeSection> sections, double height) {
  std::vector<ConeSection> cut;
  for (ConeSection section : sections) {
    if (height <= 0) break;
    if (section.height > height) {
      const double share = height / section.height;
      section.upper_diameter =
          section.lower_diameter + share * (section.upper_diameter - section.lower_diameter);
      section.height = height;
    }
    height -= section.height;
    cut.push_back(section);
  }
  return cut;
}

std::string stacked_outline(std::span<const ConeSection> sections) {
  OutlineText outline({0, 0});
  for (const ConeSection& section : sections) {
    const double y = outline.At().y;
    outline.LineTo({section.lower_diameter / 2, y});
    outline.LineTo({section.upper_diameter / 2, y + section.height});
  }
  outline.LineTo({0, outline.At().y});
  return outline.Text();
}

std::string straight_outline(std::span<const OutlinePoint> points) {
  OutlineText outline(points.front());
  for (const OutlinePoint& point : points.subspan(1)) outline.LineTo(point);
  return outline.Text();
}

}  // namespace tooldb

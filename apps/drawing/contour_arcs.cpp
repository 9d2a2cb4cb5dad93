#include "apps/drawing/contour_arcs.h"

#include <charconv>
#include <cmath>
#include <numbers>
#include <optional>

namespace tooldb {
namespace {

// The two numbers between a tag and what follows it.
std::optional<Point2d<double>> pair_after(std::string_view element, std::string_view tag) {
  const auto at = element.find(tag);
  if (at == std::string_view::npos) return std::nullopt;
  const char* next = element.data() + at + tag.size();
  const char* end = element.data() + element.size();
  Point2d<double> pair;
  for (double* value : {&pair.x, &pair.y}) {
    while (next != end && (*next == ' ' || *next == '\n' || *next == '\t')) ++next;
    const auto result = std::from_chars(next, end, *value);
    if (result.ec != std::errc()) return std::nullopt;
    next = result.ptr;
  }
  return pair;
}

}  // namespace

double ContourArc::Radius() const { return std::hypot(start.x - centre.x, start.y - centre.y); }

Point2d<double> ContourArc::Middle() const {
  const double from = std::atan2(start.y - centre.y, start.x - centre.x);
  double sweep = std::atan2(end.y - centre.y, end.x - centre.x) - from;
  constexpr double kTurn = 2 * std::numbers::pi;
  if (is_clockwise && sweep >= 0) sweep -= kTurn;
  if (!is_clockwise && sweep <= 0) sweep += kTurn;
  const double angle = from + sweep / 2;
  return {centre.x + Radius() * std::cos(angle), centre.y + Radius() * std::sin(angle)};
}

std::vector<ContourArc> contour_arcs(std::string_view contour_xml) {
  std::vector<ContourArc> arcs;
  for (auto at = contour_xml.find("<ARC"); at != std::string_view::npos;
       at = contour_xml.find("<ARC", at + 1)) {
    const auto element = contour_xml.substr(at, contour_xml.find("</ARC>", at) - at);
    const auto start = pair_after(element, "<START>");
    const auto end = pair_after(element, "<END>");
    const auto centre = pair_after(element, "<CENTER>");
    if (!start || !end || !centre) continue;
    arcs.push_back({*start, *end, *centre, element.find("\"CW\"") != std::string_view::npos});
  }
  return arcs;
}

}  // namespace tooldb

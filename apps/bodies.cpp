#include "apps/bodies.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "apps/command.h"
#include "apps/tree_items.h"
#include "tooldb/contour.h"
#include "tooldb/profile.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

constexpr long kSilhouette = 1;
constexpr double kSameDirection = 1e-9;
// What stands farther from the tool's origin has no place on any drawing, or in any mesh.
constexpr double kFarthest = 1e9;

// Types whose outline is a plate: turning inserts and extruded contours. An insert of the kind
// "centre" is turned nevertheless.
constexpr std::array<int, 2> kPlateCutters = {7, 8};
constexpr int kCustomShank = 2;
constexpr int kPlateShank = 5;
constexpr int kPlateHolder = 4;
constexpr int kTurningCentre = 25;

std::optional<Body::Role> role_of(const tdbItem& item) {
  if (dynamic_cast<const tdbToolCutter*>(&item) != nullptr) return Body::Role::kCutter;
  if (dynamic_cast<const tdbToolShank*>(&item) != nullptr) return Body::Role::kShank;
  if (dynamic_cast<const tdbToolHolder*>(&item) != nullptr) return Body::Role::kHolder;
  return std::nullopt;
}

bool is_plate(const tdbItem& item, Body::Role role) {
  const int type = item.GetType();
  if (role == Body::Role::kShank) return type == kPlateShank;
  if (role == Body::Role::kHolder) return type == kPlateHolder;
  const tdbItem* parent = item.GetParent();
  const bool is_centre = parent != nullptr && parent->GetType() == kTurningCentre &&
                         dynamic_cast<const tdbCuttingTool*>(parent) != nullptr;
  return std::ranges::find(kPlateCutters, type) != kPlateCutters.end() && !is_centre;
}

// The contour text of an item. `GetProfile` widens that of a custom shank a little, for the
// collision model; what is drawn, measured and written out is the text itself.
bool read_contour_text(const tdbItem& item, double tolerance, std::vector<Contour>& contours) {
  CEntityDB entities;
  if (!entities.Read(item.GetProfileXml(), false, 0)) return false;
  entities.ConcatenateEntities();
  Contour points;
  if (!entities.GetXZProfile(points, tolerance)) return false;
  contours.push_back(std::move(points));
  return true;
}

bool read_outline(tdbItem& item, Body::Role role, double tolerance,
                  std::vector<Contour>& contours) {
  const bool is_custom_shank = role == Body::Role::kShank && item.GetType() == kCustomShank;
  return is_custom_shank ? read_contour_text(item, tolerance, contours)
                         : item.GetProfile(nullptr, contours, tolerance, kSilhouette);
}

bool is_near(const Transformation<double>& place) {
  return std::ranges::all_of(std::array{0, 1, 2},
                             [&](int row) { return std::abs(place(row, 3)) <= kFarthest; });
}

Body body_of(tdbItem& item, Body::Role role, double tolerance) {
  Body body{&item, role, !is_plate(item, role), item.GetAbsPos(), {}, {}};
  const bool is_placed = is_near(body.place);
  if (is_placed && read_outline(item, role, tolerance, body.contours)) return body;
  body.contours.clear();
  if (!is_placed) {
    body.refusal = "it stands too far from the tool's origin; correct the positions";
    return body;
  }
  body.refusal = tdbProfile::OutlineError(item);
  if (body.refusal.empty()) {
    body.refusal = item.IsSTL() ? "its model file cannot be read" : "it has no outline";
  }
  return body;
}

template <class Use>
void for_each_point(const Body& body, Use use) {
  for (const Contour& contour : body.contours) {
    for (const auto& point : contour) {
      use(body.Placed(point));
      if (body.is_revolved) use(body.Placed({-point.x, point.y}));
    }
  }
}

}  // namespace

Point2d<double> Body::Placed(const Point2d<double>& point) const {
  const auto& m = place;
  if (!is_revolved) {
    return {m(0, 0) * point.x + m(0, 2) * point.y + m(0, 3),
            m(2, 0) * point.x + m(2, 2) * point.y + m(2, 3)};
  }
  // Across its axis a turned body looks the same from every side.
  const double length = std::hypot(m(0, 2), m(2, 2));
  const Point2d<double> along =
      length > 0 ? Point2d<double>{m(0, 2), m(2, 2)} : Point2d<double>{0, 1};
  const double scale = length > 0 ? 1 / length : 1;
  return {m(0, 3) + along.x * point.y + along.y * scale * point.x,
          m(2, 3) + along.y * point.y - along.x * scale * point.x};
}

bool Body::IsAlongAxis() const { return std::abs(std::abs(place(2, 2)) - 1) < kSameDirection; }

double fine_tolerance(const tdbItem& root) {
  return root.GetUnitOfMeasurement() == 0 ? 0.01 : 0.01 / 25.4;
}

void require_tolerance(double tolerance) {
  if (tolerance > 0 && std::isfinite(tolerance)) return;
  throw UsageError("--tolerance must be above 0");
}

std::vector<Body> bodies_of(tdbCompositeItem& root, double tolerance) {
  std::vector<Body> bodies;
  for (const TreeItem& entry : items_below(root)) {
    if (const auto role = role_of(*entry.item)) {
      bodies.push_back(body_of(*entry.item, *role, tolerance));
    }
  }
  return bodies;
}

std::vector<std::string> refusals(const std::string& owner, const std::vector<Body>& bodies) {
  std::vector<std::string> lines;
  for (const Body& body : bodies) {
    if (body.refusal.empty()) continue;
    lines.push_back(owner + ", item '" + body.item->GetName() + "': " + body.refusal);
  }
  return lines;
}

Extent axial_extent(const Body& body) {
  Extent extent{INFINITY, -INFINITY};
  for_each_point(body, [&](const Point2d<double>& p) {
    extent.low = std::min(extent.low, p.y);
    extent.high = std::max(extent.high, p.y);
  });
  return extent.low <= extent.high ? extent : Extent();
}

double largest_radius(const Body& body) {
  double radius = 0;
  for_each_point(body, [&](const Point2d<double>& p) { radius = std::max(radius, std::abs(p.x)); });
  return radius;
}

std::vector<Contour> placed_contours(const Body& body) {
  std::vector<Contour> placed = body.contours;
  for (Contour& contour : placed) {
    for (auto& point : contour) point = body.Placed(point);
  }
  return placed;
}

double radius_at(const std::vector<Contour>& placed, double height) {
  double radius = 0;
  for (const Contour& contour : placed) {
    for (std::size_t i = 1; i < contour.size(); ++i) {
      const auto& a = contour[i - 1];
      const auto& b = contour[i];
      if (std::min(a.y, b.y) > height || std::max(a.y, b.y) < height || a.y == b.y) continue;
      const double x = a.x + (b.x - a.x) * (height - a.y) / (b.y - a.y);
      radius = std::max(radius, std::abs(x));
    }
  }
  return radius;
}

}  // namespace tooldb

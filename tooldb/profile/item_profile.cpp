#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>

#include "geom/polyline.h"
#include "geom/turning_profile.h"
#include "tooldb/contour.h"
#include "tooldb/platform/guard.h"
#include "tooldb/profile.h"
#include "tooldb/profile/body_outline.h"
#include "tooldb/profile/model_file.h"
#include "tooldb/tool_parts.h"

// The contours that items hand out.

namespace tooldb {
namespace {

using Contours = std::vector<Polyline>;

constexpr long kSilhouetteMode = 1;
// How far a custom shank is grown, so that it does not just touch what it carries.
constexpr double kShankGrowth = 0.001;

/// What is done with the points of a contour text.
enum class Finish { kNone, kClose, kReachTipPlane, kGrow };

struct FinishRow {
  BodyCode code;
  Finish finish;
};

constexpr FinishRow kFinishes[] = {
    {{BodyClass::kCutter, 8}, Finish::kClose}, {{BodyClass::kCutter, 5}, Finish::kReachTipPlane},
    {{BodyClass::kHolder, 4}, Finish::kClose}, {{BodyClass::kHolder, 2}, Finish::kReachTipPlane},
    {{BodyClass::kShank, 2}, Finish::kGrow},
};

Finish finish_of(const tdbItem& item) {
  const auto row = std::ranges::find(kFinishes, body_code(item), &FinishRow::code);
  return row == std::end(kFinishes) ? Finish::kNone : row->finish;
}

void close(Polyline& points, double tolerance) {
  if (points.size() < 2 || distance(points.front(), points.back()) <= tolerance) return;
  points.push_back(Vec2(points.front()));
}

// The points with one on the tip plane beside each end that `is_off` finds away from it.
template <class Predicate>
Polyline reaching_tip_plane(const Polyline& points, const Predicate& is_off) {
  Polyline reaching;
  reaching.reserve(points.size() + 2);
  if (is_off(points.front().y)) reaching.push_back({points.front().x, 0});
  reaching.insert(reaching.end(), points.begin(), points.end());
  if (is_off(points.back().y)) reaching.push_back({points.back().x, 0});
  return reaching;
}

Contours grown(Polyline points, double tolerance) {
  if (points.size() < 2) return {};
  close(points, tolerance);
  return tdbProfile::OffsetProfile2(points, kShankGrowth);
}

Contours finished(Polyline points, Finish finish, double tolerance) {
  if (finish == Finish::kGrow) return grown(std::move(points), tolerance);
  if (finish == Finish::kClose) close(points, tolerance);
  if (finish == Finish::kReachTipPlane && points.size() >= 2) {
    points = reaching_tip_plane(points, [&](double y) { return std::abs(y) > tolerance; });
  }
  Contours contours;
  contours.push_back(std::move(points));
  return contours;
}

std::optional<Contours> text_contours(tdbItem& item, double tolerance) {
  if (!build_outline(item)) return std::nullopt;
  CEntityDB entities;
  if (!entities.Read(item.GetProfileXml(), false, 0)) return std::nullopt;
  entities.ConcatenateEntities();
  Polyline points;
  entities.GetXZProfile(points, tolerance);
  return finished(std::move(points), finish_of(item), tolerance);
}

Contours silhouette(const std::vector<Facet>& triangles, double tolerance) {
  Polyline points;
  tdbProfile::ExtractProfile(triangles, points, static_cast<float>(tolerance));
  if (points.size() > 2) {
    points = reaching_tip_plane(points, [](double y) { return y > 0; });
  }
  return {points};
}

// The section of a body that does not spin with the turning plane.
Contours turning_section(std::vector<Facet> triangles) {
  constexpr double kShortestNormal = 1e-9;
  constexpr double kWeld = 0.01;
  constexpr TurningSection kSection{.grid = 0.01,
                                    .tolerance = 0.002,
                                    .max_gap = 1,
                                    .max_steps = 5000,
                                    .passes = 2,
                                    .unite = true,
                                    .holes = false};
  for (Facet& f : triangles) f.n = facet_normal(f.a, f.b, f.c, kShortestNormal);
  VexaTurningProfile section(kWeld);
  section.Add(triangles);
  Contours contours;
  section.Compute(contours, kSection);
  return contours;
}

std::optional<Contours> model_contours(const tdbItem& item, kinSceneManager* scene,
                                       double tolerance, long mode) {
  auto triangles = model_triangles(item, scene);
  if (!triangles) return std::nullopt;
  return mode == kSilhouetteMode ? silhouette(*triangles, tolerance)
                                 : turning_section(*std::move(triangles));
}

// Fewer points for the same shape, clockwise.
void tidy(Contours& contours, double tolerance) {
  for (Polyline& contour : contours) {
    simplify(contour, tolerance);
    if (signed_area(contour) > 0) std::ranges::reverse(contour);
  }
}

}  // namespace
}  // namespace tooldb

bool tdbItem::GetProfile(kinSceneManager* scene,
                         std::vector<std::vector<Point2d<double>>>& contours, double tolerance,
                         long mode) {
  const bool has_outline = tooldb::body_class(*this) != tooldb::BodyClass::kNone;
  if (!has_outline || !(tolerance > 0) || !std::isfinite(tolerance)) return false;
  return tooldb::guarded(false, [&] {
    auto added = IsSTL() ? tooldb::model_contours(*this, scene, tolerance, mode)
                         : tooldb::text_contours(*this, tolerance);
    if (!added) return false;
    std::ranges::move(*added, std::back_inserter(contours));
    tooldb::tidy(contours, tolerance);
    return !contours.empty();
  });
}

#include "tooldb/profile.h"

#include "geom/polygons.h"
#include "geom/silhouette.h"
#include "tooldb/profile/body_outline.h"
#include "tooldb/profile/contour_text.h"
#include "tooldb/profile/insert_outline.h"
#include "tooldb/profile/polyshift.h"

bool tdbProfile::ExtractProfile(const std::vector<Triangle<double>>& triangles,
                                std::vector<Point2d<double>>& points, float tolerance) {
  points = tooldb::silhouette(triangles, tolerance);
  return !points.empty();
}

std::vector<std::vector<Point2d<double>>> tdbProfile::OffsetProfile2(
    const std::vector<Point2d<double>>& contour, double distance) {
  if (const tooldb::Polyshift* library = tooldb::Polyshift::BesideHost()) {
    if (auto polygons = library->Offset(contour, distance)) return *std::move(polygons);
  }
  return tooldb::offset_contour(contour, distance);
}

bool tdbProfile::CreateInsertProfile(const tdbInsertGeometry& insert, std::string& contour_xml) {
  const tooldb::Outline outline = tooldb::insert_outline(insert);
  if (!outline.Stands()) return false;
  contour_xml = tooldb::contour_text(outline.segments);
  return true;
}

std::string tdbProfile::OutlineError(const tdbItem& item) {
  if (tooldb::body_class(item) == tooldb::BodyClass::kNone) return {};
  if (!tooldb::is_model(item)) return tooldb::body_outline(item).refusal;
  return *item.GetShapeFilePath() == '\0' ? "no model file is set" : "";
}

std::vector<tdbDimension> tdbProfile::GetDimensions(const tdbItem& item) {
  return tooldb::body_dimensions(item);
}

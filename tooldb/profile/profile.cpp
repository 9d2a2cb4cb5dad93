#include "tooldb/profile.h"

#include "geom/polygons.h"
#include "geom/silhouette.h"
#include "tooldb/platform/guard.h"
#include "tooldb/profile/body_outline.h"
#include "tooldb/profile/contour_text.h"
#include "tooldb/profile/insert_outline.h"
#include "tooldb/profile/polyshift.h"
#include "tooldb/profile/stl_file.h"

namespace {

// Why the library's own scene manager cannot load the model of an item; empty when it can.
std::string model_error(const tdbItem& item) {
  if (*item.GetShapeFilePath() == '\0') return "no model file is set";
  tdbError error;
  const bool loaded = tooldb::guarded(
      error, false, [&] { return !tooldb::read_stl_file(item.GetShapeFilePath()).empty(); });
  if (loaded) return {};
  return error.message.empty() ? "the model file holds no triangle" : error.message;
}

}  // namespace

bool tdbProfile::ExtractProfile(const std::vector<Triangle<double>>& triangles,
                                std::vector<Point2d<double>>& points, float tolerance) {
  points.clear();
  return tooldb::guarded(false, [&] {
    points = tooldb::silhouette(triangles, tolerance);
    return !points.empty();
  });
}

std::vector<std::vector<Point2d<double>>> tdbProfile::OffsetProfile2(
    const std::vector<Point2d<double>>& contour, double distance) {
  return tooldb::guarded(std::vector<tooldb::Polyline>(), [&] {
    if (const tooldb::Polyshift* library = tooldb::Polyshift::BesideHost()) {
      if (auto polygons = library->Offset(contour, distance)) return *std::move(polygons);
    }
    return tooldb::offset_contour(contour, distance);
  });
}

bool tdbProfile::CreateInsertProfile(const tdbInsertGeometry& insert, std::string& contour_xml) {
  return tooldb::guarded(false, [&] {
    const tooldb::Outline outline = tooldb::insert_outline(insert);
    if (!outline.Stands()) return false;
    contour_xml = tooldb::contour_text(outline.segments);
    return true;
  });
}

std::string tdbProfile::OutlineError(const tdbItem& item) {
  if (tooldb::body_class(item) == tooldb::BodyClass::kNone) return {};
  tdbError failure;
  std::string refusal = tooldb::guarded(failure, std::string(), [&] {
    return tooldb::is_model(item) ? model_error(item) : tooldb::body_outline(item).refusal;
  });
  return failure.message.empty() ? refusal : failure.message;
}

std::vector<tdbDimension> tdbProfile::GetDimensions(const tdbItem& item) {
  return tooldb::guarded(std::vector<tdbDimension>(),
                         [&] { return tooldb::body_dimensions(item); });
}

#include "tooldb/profile.h"

#include "tooldb/profile/body_outline.h"
#include "tooldb/profile/contour_text.h"
#include "tooldb/profile/insert_outline.h"

bool tdbProfile::CreateInsertProfile(const tdbInsertGeometry& insert, std::string& contour_xml) {
  const tooldb::Outline outline = tooldb::insert_outline(insert);
  if (!outline.Stands()) return false;
  contour_xml = tooldb::contour_text(outline.segments);
  return true;
}

std::string tdbProfile::OutlineError(const tdbItem& item) {
  if (!tooldb::is_body(item)) return {};
  if (!tooldb::is_model(item)) return tooldb::body_outline(item).refusal;
  return *item.GetShapeFilePath() == '\0' ? "no model file is set" : "";
}

std::vector<tdbDimension> tdbProfile::GetDimensions(const tdbItem& item) {
  return tooldb::body_dimensions(item);
}

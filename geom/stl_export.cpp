#include "geom/stl.h"
#include "tooldb/platform/guard.h"
#include "tooldb/stl.h"

std::string tdbStlText(const std::vector<Triangle<double>>& triangles, const std::string& name) {
  return tooldb::guarded(std::string(), [&] { return tooldb::stl_text(triangles, name); });
}

std::string tdbStlBinary(const std::vector<Triangle<double>>& triangles) {
  return tooldb::guarded(std::string(), [&] { return tooldb::stl_binary(triangles); });
}

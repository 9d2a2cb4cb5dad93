#include "geom/stl.h"
#include "tooldb/platform/guard.h"
#include "tooldb/stl.h"

std::string tdbStlText(const std::vector<Triangle<double>>& triangles, const std::string& name) {
  tdbError error;
  return tooldb::guarded(error, std::string(), [&] { return tooldb::stl_text(triangles, name); });
}

std::string tdbStlBinary(const std::vector<Triangle<double>>& triangles) {
  tdbError error;
  return tooldb::guarded(error, std::string(), [&] { return tooldb::stl_binary(triangles); });
}

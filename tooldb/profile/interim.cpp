#include "tooldb/profile.h"
#include "tooldb/profile/stl_file.h"

std::optional<std::vector<tooldb::Facet>> tooldb::read_stl_file(const std::string&) {
  return std::nullopt;
}
bool tdbProfile::ExtractProfile(const std::vector<Triangle<double>>&, std::vector<Point2d<double>>&,
                                float) {
  return false;
}

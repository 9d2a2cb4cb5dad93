#include "tooldb/profile/stl_file.h"

std::optional<std::vector<tooldb::Facet>> tooldb::read_stl_file(const std::string&) {
  return std::nullopt;
}

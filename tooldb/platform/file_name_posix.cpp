#include "tooldb/platform/file_name.h"

namespace tooldb {

std::string_view system_name_problem(std::string_view name) {
  return name == "." || name == ".." ? "name of a folder" : std::string_view();
}

std::string_view system_path_problem(const std::string&) { return {}; }

}  // namespace tooldb

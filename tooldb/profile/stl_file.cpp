#include "tooldb/profile/stl_file.h"

#include "geom/stl.h"
#include "tooldb/error.h"
#include "tooldb/platform/file_system.h"

namespace tooldb {

std::vector<Facet> read_stl_file(const std::string& path) {
  const std::string bytes = file_system().Read(path);
  MemoryBytes source(bytes);
  std::string error;
  auto mesh = read_stl(source, error);
  if (!mesh) throw tdbError(1, path + ": " + error);
  return *std::move(mesh);
}

}  // namespace tooldb

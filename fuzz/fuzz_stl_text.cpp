#include <cstddef>
#include <cstdint>

#include "fuzz/round_trip.h"
#include "geom/stl.h"

namespace {

std::string written(std::string_view bytes) {
  tooldb::MemoryBytes source(bytes);
  std::string error;
  const auto mesh = tooldb::read_stl(source, error);
  fuzz::expect(mesh.has_value() == error.empty(), "a mesh or an error");
  return mesh ? tooldb::stl_text(*mesh, "fuzz") : std::string();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string first = written({reinterpret_cast<const char*>(data), size});
  if (!first.empty()) fuzz::expect_same(first, written(first));
  return 0;
}

#include <cstddef>
#include <cstdint>

#include "fuzz/round_trip.h"
#include "geom/stl.h"

namespace {

// A header without a word of the text form; the input goes on with the count.
const std::string kHeader(80, '\0');

std::optional<std::string> written(std::string_view bytes) {
  tooldb::MemoryBytes source(bytes);
  std::string error;
  const auto mesh = tooldb::read_stl(source, error);
  fuzz::expect(mesh.has_value() == error.empty(), "a mesh or an error");
  return mesh ? std::optional(tooldb::stl_binary(*mesh)) : std::nullopt;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto first = written(kHeader + std::string(reinterpret_cast<const char*>(data), size));
  if (first) fuzz::expect_same(*first, written(*first).value_or("nothing"));
  return 0;
}

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "fuzz/round_trip.h"
#include "tooldb/tool_parts.h"
#include "tooldb/xml_reader.h"

namespace {

std::vector<std::unique_ptr<tdbToolComponent>> read(const std::string& text) {
  std::vector<tdbToolComponent*> found;
  tdbError error;
  tdbXmlReader::ImportFromXml(text.c_str(), {}, found, error, nullptr);
  return {found.begin(), found.end()};
}

std::string written(tdbToolComponent& component) {
  bool member = true;
  component.Visit(
      [](void* flag, tdbItem* item) { item->SetItemComponent(*static_cast<bool*>(flag)); },
      &member);
  std::string text;
  component.WriteXml(text, {});
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  for (const auto& component : read(std::string(reinterpret_cast<const char*>(data), size))) {
    if (fuzz::carries_markup(*component)) continue;
    const std::string first = written(*component);
    const auto again = read(first);
    // A component without a name has no code to be imported under.
    if (component->GetName().empty()) continue;
    fuzz::expect_same(first, again.size() == 1 ? written(*again.front()) : std::string());
  }
  return 0;
}

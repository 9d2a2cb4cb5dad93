#include <cstddef>
#include <cstdint>
#include <memory>

#include "fuzz/round_trip.h"
#include "tooldb/tool.h"
#include "tooldb/xml_reader.h"

namespace {

std::unique_ptr<tdbTool> read(const std::string& text) {
  tdbError error;
  std::unique_ptr<tdbTool> tool(tdbXmlReader::ImportToolFromXml(text.c_str(), {}, error, nullptr));
  fuzz::expect(tool || !error.message.empty(), "a tool or an error");
  return tool;
}

std::string written(const tdbTool& tool) {
  std::string text;
  tool.WriteXml(text, {});
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto tool = read(std::string(reinterpret_cast<const char*>(data), size));
  if (!tool || fuzz::carries_markup(*tool) || fuzz::carries_lost_zero(*tool)) return 0;
  const std::string first = written(*tool);
  const auto again = read(first);
  fuzz::expect_same(first, again ? written(*again) : std::string());
  return 0;
}

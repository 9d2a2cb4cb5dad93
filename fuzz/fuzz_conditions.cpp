#include <cstddef>
#include <cstdint>
#include <memory>

#include "fuzz/round_trip.h"
#include "tooldb/tool.h"
#include "tooldb/xml_reader.h"

namespace {

std::string conditions_written(const std::string& type, const std::string& block) {
  const std::string text = "<TOOL NAME=\"T\" TYPE=\"" + type + "\">" + block + "</TOOL>";
  tdbError error;
  const std::unique_ptr<tdbTool> tool(
      tdbXmlReader::ImportToolFromXml(text.c_str(), {}, error, nullptr));
  std::string written;
  if (tool && tool->IsTurningTool()) {
    tool->GetTurningCutCond().WriteXml(written);
  } else if (tool) {
    tool->GetCutCond().WriteXml(written);
  }
  return written;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string block(reinterpret_cast<const char*>(data), size);
  for (const char* type : {"MILL", "TURNING"}) {
    const std::string first = conditions_written(type, block);
    if (first.empty()) continue;
    const std::string again = conditions_written(type, first);
    // "%f" of a number beyond 2^53 and "%g" round once more at most.
    fuzz::expect_same(again, conditions_written(type, again));
  }
  return 0;
}

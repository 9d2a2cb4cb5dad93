#include <cstddef>
#include <cstdint>

#include "fuzz/round_trip.h"
#include "tooldb/tool.h"
#include "tooldb/tool_db.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  tdbToolDB first("first", 1);
  first.ImportFromXml(text.c_str(), {});
  std::string written;
  static_cast<const tdbToolDB&>(first).WriteXml(written, {});
  for (int i = 0; i < first.GetToolCount(1); ++i) {
    tdbTool* tool = first.GetTool(i, 1);
    // A tool without a name has no code of its own once its CODE attribute is gone.
    if (tool->GetName().empty() || fuzz::carries_markup(*tool) || fuzz::carries_lost_zero(*tool)) {
      return 0;
    }
  }
  tdbToolDB second("second", 1);
  second.ImportFromXml(written.c_str(), {});
  std::string again;
  static_cast<const tdbToolDB&>(second).WriteXml(again, {});
  fuzz::expect_same(written, again);
  return 0;
}

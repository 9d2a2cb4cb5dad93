#include <memory>

#include "tooldb/platform/guard.h"
#include "tooldb/tool.h"
#include "tooldb/tool_db.h"
#include "tooldb/tool_makers.h"
#include "tooldb/tool_parts.h"

namespace {

/// The mark of a placeholder tool.
constexpr long kTemporaryFlag = 1;

/// Runs `make` and adds the tool that it makes; null when either fails.
template <class Make>
tdbTool* added(tdbToolDB* db, const std::string& code, int type, Make&& make) {
  if (db == nullptr) return nullptr;
  tdbError error;
  tdbTool* const result = tooldb::guarded(error, static_cast<tdbTool*>(nullptr), [&] {
    auto tool = std::make_unique<tdbTool>(code);
    tool->SetType(type);
    tool->SetFlags(kTemporaryFlag);
    make(*tool);
    error = tdbError(0);
    return db->AddTool(tool.get(), false) ? tool.release() : nullptr;
  });
  if (result == nullptr && error.code != 0) db->Error(&error);
  return result;
}

}  // namespace

tdbTool* tdbAddTempMillTool(tdbToolDB* db, std::string code) {
  return added(db, code, 0, [](tdbTool& tool) {
    tool.AddCutter(new tdbToolCutter(5));
    tool.AddShank(new tdbToolShank(2));
  });
}

tdbTool* tdbAddTempTurnTool(tdbToolDB* db, std::string code) {
  return added(db, code, 3, [](tdbTool& tool) {
    tool.AddCutter(new tdbToolCutter(8));
    tool.AddShank(new tdbToolShank(5));
    tool.AddHolder(new tdbToolHolder(4));
  });
}

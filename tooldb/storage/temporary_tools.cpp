#include <memory>

#include "tooldb/platform/guard.h"
#include "tooldb/tool.h"
#include "tooldb/tool_db.h"
#include "tooldb/tool_makers.h"
#include "tooldb/tool_parts.h"

namespace {

/// The mark of a placeholder tool.
constexpr long kTemporaryFlag = 1;

/// Gives the tool a new part of that type.
template <class Part>
void give(tdbTool& tool, void (tdbTool::*add)(Part*), int type) {
  auto part = std::make_unique<Part>(type);
  (tool.*add)(part.get());
  static_cast<void>(part.release());
}

/// Fills a new tool with `fill` and adds it; null, and reported, when that fails.
template <class Fill>
tdbTool* added(tdbToolDB* db, const std::string& code, int type, Fill&& fill) {
  if (db == nullptr) return nullptr;
  tdbError error;
  bool is_made = false;
  tdbTool* const added = tooldb::guarded(error, static_cast<tdbTool*>(nullptr), [&] {
    auto tool = std::make_unique<tdbTool>(code, type);
    tool->SetFlags(kTemporaryFlag);
    fill(*tool);
    is_made = true;
    return db->AddTool(tool.get(), false) ? tool.release() : nullptr;
  });
  if (!is_made) db->Error(&error);  // the addition tells of its own
  return added;
}

}  // namespace

tdbTool* tdbAddTempMillTool(tdbToolDB* db, std::string code) {
  return added(db, code, 0, [](tdbTool& tool) {
    give(tool, &tdbTool::AddCutter, 5);
    give(tool, &tdbTool::AddShank, 2);
  });
}

tdbTool* tdbAddTempTurnTool(tdbToolDB* db, std::string code) {
  return added(db, code, 3, [](tdbTool& tool) {
    give(tool, &tdbTool::AddCutter, 8);
    give(tool, &tdbTool::AddShank, 5);
    give(tool, &tdbTool::AddHolder, 4);
  });
}

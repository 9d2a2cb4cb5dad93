#pragma once

#include <functional>
#include <string>
#include <vector>

class tdbTool;

namespace tooldb {

/// One value of a tool's cutting conditions, by name: "inserts", "verify.feed.maximum" and so on.
struct ConditionSlot {
  enum class Kind { kNumber, kCount, kFlag };  ///< a flag is 0 or 1

  std::string name;
  Kind kind;
  std::function<double()> get;
  std::function<void(double)> set;
};

/// The conditions that the tool's file holds: the turning ones for a turning tool, else the milling
/// ones. The slots refer to the tool.
std::vector<ConditionSlot> condition_slots(tdbTool& tool);

}  // namespace tooldb

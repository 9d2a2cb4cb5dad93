#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// The changes that a kill or a power cut may interrupt, and what each may leave behind.

namespace torture {

/// How a tool is stored: under its first or its second code, with its first or second text.
enum class Stored { kNot, kOldText, kNewText, kRenamedOldText, kRenamedNewText };

/// Told with the number of tools whose change is reported as done.
using Acknowledge = std::function<void(int tools)>;

struct Operation {
  std::string_view name;
  /// Is tool `i` stored before the change?
  Stored (*before)(int i);
  Stored after;
  /// What a kill may leave besides, for a change in two steps; `after` if there is none.
  Stored between;
  /// Changes `count` tools in the folder, in order of their number.
  void (*act)(const std::filesystem::path& folder, int count, const Acknowledge& acknowledge);
  /// True when every tool is reported at once, at the end.
  bool bulk;
  /// The folder below the given one that holds the changed tools; empty: the given one.
  std::string_view target;
};

const std::vector<Operation>& operations();
const Operation* find_operation(std::string_view name);

/// Makes the folder as it is before the change; nothing is flushed.
void prepare(const Operation& operation, const std::filesystem::path& folder, int count);

/// What went wrong, counted.
struct Faults {
  int half_written = 0;  ///< a file that is neither the old nor the new text
  int lost = 0;          ///< a tool that is nowhere
  int doubled = 0;       ///< a tool that is stored twice
  int missing = 0;       ///< a change that was reported done and is not there
  int listed = 0;        ///< list and disk disagree, or a file that is no tool is left after `Init`
  std::string first;     ///< the first of them in words

  int Total() const { return half_written + lost + doubled + missing + listed; }
  Faults& operator+=(const Faults& other);
};

/// Opens the folder as a fresh process would and looks at every tool.
/// @param acknowledged  how many tools were reported done
Faults verify(const Operation& operation, const std::filesystem::path& folder, int count,
              int acknowledged);

}  // namespace torture

#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

class tdbToolDB;

/// @file
/// The changes that a kill or a power cut may interrupt, and what each may leave behind.

namespace torture {

/// How a tool is stored: under its first or its second code, with its first or second text.
enum class Stored { kNot, kOldText, kNewText, kRenamedOldText, kRenamedNewText };

struct Operation {
  std::string_view name;
  /// Is tool `i` stored before the change?
  Stored (*before)(int i);
  Stored after;
  /// What a kill may leave besides, for a change in two steps.
  Stored between = after;
  /// Changes one tool, or all of them at a stroke; the other is null.
  void (*change)(tdbToolDB& db, int i) = nullptr;
  void (*change_all)(tdbToolDB& db, int count) = nullptr;
  /// The folder below the given one that holds the changed tools; empty: the given one.
  std::string_view target = {};
};

const std::vector<Operation>& operations();
const Operation* find_operation(std::string_view name);

/// Makes the folder as it is before the change; nothing is flushed.
void prepare(const Operation& operation, const std::filesystem::path& folder, int count);

/// Changes `count` tools in the folder, in order of their number.
/// @param acknowledge  told with the number of tools whose change is reported as done
void act(const Operation& operation, const std::filesystem::path& folder, int count,
         const std::function<void(int tools)>& acknowledge);

/// Opens the folder as a fresh process would and looks at every tool: what is wrong, in words.
/// @param acknowledged  how many tools were reported done
std::vector<std::string> verify(const Operation& operation, const std::filesystem::path& folder,
                                int count, int acknowledged);

}  // namespace torture

#include <cstdint>
#include <optional>

#include "tooldb/platform/dynamic_library.h"
#include "tooldb/platform/guard.h"
#include "tooldb/platform/process.h"
#include "tooldb/platform/safe_write.h"
#include "tooldb/tool_makers.h"
#include "tooldb/util.h"

namespace {

using tooldb::DynamicLibrary;

// The truth value is taken as one byte, which serves filters that return bool and those that return
// int alike; the argument of the text function is as wide as a pointer for the same reason.
using InitFunction = unsigned char (*)();
using FilterFunction = const char* (*)(const char*);
using TextFunction = const char* (*)(std::intptr_t);
using ExitFunction = void (*)();

constexpr const char* kInit = "tdbFilterInit";
constexpr const char* kExit = "tdbFilterExit";

/// The first "*.tlf" library beside the host, after making its folder the current one.
std::optional<DynamicLibrary> load_filter() {
  const std::string folder = tooldb::folder_of(tooldb::executable_path());
  tooldb::set_current_folder(folder);
  std::vector<std::string> names;
  tdbFileUtil::get_files(folder, names, ".tlf");
  if (names.empty()) return std::nullopt;
  return DynamicLibrary::Load(folder + '/' + names.front());
}

bool filter(const char* input, std::string& output) {
  const std::optional<DynamicLibrary> library = load_filter();
  if (!library) return false;
  const auto init = library->Find<InitFunction>(kInit);
  const auto run = library->Find<FilterFunction>("tdbFilter");
  const auto exit = library->Find<ExitFunction>(kExit);
  if (init == nullptr || run == nullptr || exit == nullptr || !init()) return false;
  const char* const result = run(input);
  output = result == nullptr ? "" : result;
  exit();
  return result != nullptr;
}

std::string filter_text() {
  const std::optional<DynamicLibrary> library = load_filter();
  if (!library) return {};
  const auto init = library->Find<InitFunction>(kInit);
  const auto get_text = library->Find<TextFunction>("tdbFilterGetString");
  const auto exit = library->Find<ExitFunction>(kExit);
  if (init == nullptr || !init()) return {};
  const char* const result = get_text == nullptr ? nullptr : get_text(0);
  std::string text = result == nullptr ? "" : result;
  if (exit != nullptr) exit();
  return text;
}

}  // namespace

bool tdbFilter(const char* input, std::string& output) {
  tdbError ignored;
  return tooldb::guarded(ignored, false, [&] { return filter(input, output); });
}

std::string tdbGetFilterString() {
  tdbError ignored;
  return tooldb::guarded(ignored, std::string(), filter_text);
}

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <algorithm>

#include "tooldb/platform/file_name.h"

namespace tooldb {

namespace {

constexpr std::string_view kSlashes = "/\\";

bool is_slash(char c) { return kSlashes.find(c) != std::string_view::npos; }

/// Empty for bytes that the code page does not have.
std::wstring wide_text(std::string_view text) {
  const auto convert = [&](wchar_t* to, int size) {
    return MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, text.data(),
                               static_cast<int>(text.size()), to, size);
  };
  std::wstring wide(static_cast<std::size_t>(convert(nullptr, 0)), L'\0');
  convert(wide.data(), static_cast<int>(wide.size()));
  return wide;
}

/// A device is opened by its name in any folder, with any extension, and then waited for.
bool is_device_name(const std::wstring& name) {
  constexpr std::wstring_view kDevices[] = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
  constexpr std::wstring_view kPorts[] = {L"COM", L"LPT"};
  constexpr std::wstring_view kPortNumbers = L"0123456789\u00B9\u00B2\u00B3";
  std::wstring stem = name.substr(0, name.find(L'.'));
  stem.erase(stem.find_last_not_of(L' ') + 1);
  for (wchar_t& c : stem) c = c >= L'a' && c <= L'z' ? static_cast<wchar_t>(c - 32) : c;
  if (std::ranges::find(kDevices, stem) != std::end(kDevices)) return true;
  return stem.size() == 4 && kPortNumbers.find(stem[3]) != std::wstring_view::npos &&
         std::ranges::find(kPorts, stem.substr(0, 3)) != std::end(kPorts);
}

/// In the system's units, with the current folder where the path depends on it.
bool is_too_long(const std::string& path) {
  const std::size_t longest = MAX_PATH - 1;
  return GetFullPathNameW(wide_text(path).c_str(), 0, nullptr, nullptr) > longest + 1;
}

std::string_view name_problem_in(std::string_view path) {
  while (!path.empty()) {
    const std::string_view name = path.substr(0, path.find_first_of(kSlashes));
    const bool moves = name.empty() || name == "." || name == "..";
    const std::string_view problem = moves ? std::string_view() : system_name_problem(name);
    if (!problem.empty()) return problem;
    path.remove_prefix(std::min(name.size() + 1, path.size()));
  }
  return {};
}

}  // namespace

std::string_view system_name_problem(std::string_view name) {
  const std::wstring wide = wide_text(name);
  if (wide.empty() && !name.empty()) return "bytes in the name that the code page does not have";
  if (is_device_name(wide)) return "name of a device";
  if (name.ends_with('.') || name.ends_with(' ')) {
    return "name that ends in a dot or a blank, which the system drops";
  }
  if (name.find(':') != std::string_view::npos) return "colon in the name";
  return {};
}

std::string_view system_path_problem(const std::string& path) {
  std::string_view names = path;
  if (names.size() > 3 && is_slash(names[0]) && is_slash(names[1]) &&
      (names[2] == '.' || names[2] == '?') && is_slash(names[3])) {
    return "path of a device";
  }
  if (names.size() > 1 && names[1] == ':') {
    names.remove_prefix(2);
    if (names.empty() || !is_slash(names[0])) {
      return "relative to the current folder of a drive; give the full path, as in C:\\tools";
    }
  }
  const std::string_view problem = name_problem_in(names);
  if (!problem.empty()) return problem;
  return is_too_long(path) ? "path longer than 259 characters" : std::string_view();
}

}  // namespace tooldb

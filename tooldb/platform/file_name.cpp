#include "tooldb/platform/file_name.h"

#include <algorithm>

#include "tooldb/platform/file_system.h"

namespace tooldb {

namespace {

constexpr std::size_t kLongestFileName = 255;

bool is_control(char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }

}  // namespace

std::string_view new_file_name_problem(std::string_view name) {
  if (name.size() > kLongestFileName) return "file name longer than 255 bytes";
  if (std::any_of(name.begin(), name.end(), is_control)) return "control character in the name";
  return system_name_problem(name);
}

void require_plain_path(const std::string& path) {
  const std::string_view problem = system_path_problem(path);
  if (!problem.empty()) throw FileError(path, std::string(problem));
}

std::string_view file_stem(std::string_view path) {
#if defined(_WIN32)
  constexpr std::string_view kSeparators = "/\\:";
#else
  constexpr std::string_view kSeparators = "/";
#endif
  const std::string_view name = path.substr(path.find_last_of(kSeparators) + 1);
  return name.substr(0, name.rfind('.'));
}

}  // namespace tooldb

#include "tooldb/platform/file_name.h"

#include <algorithm>

namespace tooldb {

namespace {

constexpr std::size_t kLongestFileName = 255;

bool is_control(char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }

}  // namespace

std::string_view new_file_name_problem(std::string_view name) {
  if (name.size() > kLongestFileName) return "file name longer than 255 bytes";
  if (std::any_of(name.begin(), name.end(), is_control)) return "control character in the name";
  if (!is_in_code_page(name)) return "bytes in the name that the code page does not have";
  if (is_reserved_file_name(name)) return "name reserved by the system";
  return {};
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

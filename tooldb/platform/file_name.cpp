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
  if (is_reserved_file_name(name)) return "name reserved by the system";
  return {};
}

}  // namespace tooldb

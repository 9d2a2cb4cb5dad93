#include "apps/checks/finding.h"

#include <charconv>

namespace tooldb {

std::size_t line_in(std::string_view message) {
  constexpr std::string_view kWord = "line ";
  const auto at = message.find(kWord);
  if (at == std::string_view::npos) return 0;
  std::size_t line = 0;
  std::from_chars(message.data() + at + kWord.size(), message.data() + message.size(), line);
  return line;
}

}  // namespace tooldb

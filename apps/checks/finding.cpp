#include "apps/checks/finding.h"

#include <algorithm>
#include <charconv>

namespace tooldb {

std::size_t line_of(std::string_view bytes, std::string_view text) {
  const auto at = bytes.find(text);
  if (text.empty() || at == std::string_view::npos) return 0;
  return 1 + static_cast<std::size_t>(std::ranges::count(bytes.substr(0, at), '\n'));
}

std::size_t line_in(std::string_view message) {
  constexpr std::string_view kWord = "line ";
  const auto at = message.find(kWord);
  if (at == std::string_view::npos) return 0;
  std::size_t line = 0;
  std::from_chars(message.data() + at + kWord.size(), message.data() + message.size(), line);
  return line;
}

}  // namespace tooldb

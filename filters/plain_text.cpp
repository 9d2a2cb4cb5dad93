#include "filters/plain_text.h"

#include <algorithm>
#include <array>

namespace tooldb {
namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

struct Mark {
  char plain;
  std::string_view full_width;
};
constexpr std::array<Mark, 3> kMarks = {Mark{'<', "\uFF1C"}, Mark{'&', "\uFF06"},
                                        Mark{'"', "\uFF02"}};

constexpr bool is_control(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }

constexpr bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

constexpr bool fits_element_name(char c) {
  return is_letter(c) || (c >= '0' && c <= '9') || c == '_' || c == '-' || c == '.';
}

void append_storable(std::string& out, char c, std::string_view allowed_controls) {
  const auto* mark = std::ranges::find(kMarks, c, &Mark::plain);
  if (mark != kMarks.end()) {
    out += mark->full_width;
  } else {
    out += is_control(c) && allowed_controls.find(c) == std::string_view::npos ? ' ' : c;
  }
}

std::string storable(std::string_view text, std::string_view allowed_controls) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r') {  // "\r\n" and a lone "\r" are one line end
      if (i + 1 < text.size() && text[i + 1] == '\n') continue;
      append_storable(out, '\n', allowed_controls);
    } else {
      append_storable(out, text[i], allowed_controls);
    }
  }
  return std::string(trimmed_text(out));
}

}  // namespace

std::string_view trimmed_text(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string lower_case(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::string_view last_path_part(std::string_view path) {
  const std::size_t slash = path.find_last_of("/\\");
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view without_extension(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos || dot == 0 ? name : name.substr(0, dot);
}

void append_to_list(std::string& list, std::string_view piece) {
  if (!list.empty()) list += ", ";
  list += piece;
}

std::string storable_text(std::string_view text) { return storable(text, "\n\t"); }

std::string storable_line(std::string_view text) { return storable(text, ""); }

bool has_marks(std::string_view text) {
  return text.find_first_of("<&\"") != std::string_view::npos;
}

std::string element_name(std::string_view text) {
  std::string name;
  if (text.empty() || !is_letter(text.front())) name += '_';
  for (const char c : text) name += fits_element_name(c) ? c : '_';
  return name;
}

std::string_view at_most(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  while (size > 0 && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) --size;
  return text.substr(0, size);
}

}  // namespace tooldb

#include "apps/display_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace tooldb {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Characters that take no column of their own: marks, joiners, variation selectors.
constexpr auto kZeroWidth = std::to_array<Range>({{0x300, 0x36f},
                                                  {0x483, 0x489},
                                                  {0x591, 0x5bd},
                                                  {0x610, 0x61a},
                                                  {0x64b, 0x65f},
                                                  {0xe31, 0xe31},
                                                  {0xe34, 0xe3a},
                                                  {0xe47, 0xe4e},
                                                  {0x200b, 0x200f},
                                                  {0x202a, 0x202e},
                                                  {0x2060, 0x2069},
                                                  {0x20d0, 0x20ff},
                                                  {0x302a, 0x302d},
                                                  {0x3099, 0x309a},
                                                  {0xfe00, 0xfe0f},
                                                  {0xfe20, 0xfe2f},
                                                  {0xfeff, 0xfeff},
                                                  {0xe0100, 0xe01ef}});

// Characters that take two columns: East Asian wide and full-width forms, emoji.
constexpr auto kWide = std::to_array<Range>({{0x1100, 0x115f},
                                             {0x2e80, 0x303e},
                                             {0x3041, 0x4dbf},
                                             {0x4e00, 0xa4cf},
                                             {0xa960, 0xa97f},
                                             {0xac00, 0xd7a3},
                                             {0xf900, 0xfaff},
                                             {0xfe30, 0xfe6f},
                                             {0xff00, 0xff60},
                                             {0xffe0, 0xffe6},
                                             {0x1f300, 0x1f64f},
                                             {0x1f680, 0x1f6ff},
                                             {0x1f900, 0x1f9ff},
                                             {0x20000, 0x3fffd}});

bool in_table(char32_t c, const auto& table) {
  const auto after = std::ranges::upper_bound(table, c, {}, &Range::first);
  return after != table.begin() && c <= std::prev(after)->last;
}

int width_of(char32_t c) {
  if (in_table(c, kZeroWidth)) return 0;
  return in_table(c, kWide) ? 2 : 1;
}

constexpr std::string_view kReplacement = "\xef\xbf\xbd";
constexpr std::string_view kEllipsis = "\xe2\x80\xa6";

struct Character {
  char32_t code = 0;
  std::size_t length = 1;  // bytes
  bool valid = false;
};

bool is_continuation(char c) { return (static_cast<unsigned char>(c) & 0xc0) == 0x80; }

// The first character of a text that is not empty; an invalid one is a single byte.
Character first_character(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return {lead, 1, true};
  const std::size_t length = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
  if (lead < 0xc2 || lead > 0xf4 || text.size() < length) return {};
  char32_t code = lead & (0x7fU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if (!is_continuation(text[i])) return {};
    code = (code << 6) | (static_cast<unsigned char>(text[i]) & 0x3fU);
  }
  const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  const bool surrogate = code >= 0xd800 && code <= 0xdfff;
  if (overlong || surrogate || code > 0x10ffff) return {};
  return {code, length, true};
}

bool is_control(char32_t c) { return c < 0x20 || (c >= 0x7f && c < 0xa0); }

void append_printable(std::string& out, std::string_view text, bool keep_lines) {
  while (!text.empty()) {
    const Character c = first_character(text);
    const bool line_end = c.code == '\n' && keep_lines;
    if (line_end) {
      out += '\n';
    } else if (c.valid && (c.code == '\n' || c.code == '\t' || c.code == '\r')) {
      out += ' ';
    } else if (!c.valid || is_control(c.code)) {
      out += kReplacement;
    } else {
      out += text.substr(0, c.length);
    }
    text.remove_prefix(c.length);
  }
}

// Length in bytes of the longest head of `text` that takes at most `width` columns.
std::size_t head_within(std::string_view text, int width) {
  std::size_t end = 0;
  while (end < text.size()) {
    const Character c = first_character(text.substr(end));
    const int columns = width_of(c.code);
    if (columns > width) break;
    width -= columns;
    end += c.length;
  }
  return end;
}

void wrap_paragraph(std::string& out, std::string_view text, int width, int indent) {
  int column = 0;
  while (!text.empty()) {
    const auto end = std::min(text.find(' '), text.size());
    const auto word = text.substr(0, end);
    const int columns = display_width(word);
    if (column > 0 && column + 1 + columns > width) {
      out += '\n';
      column = 0;
    }
    if (column > 0) out += ' ';
    if (column == 0) out.append(static_cast<std::size_t>(indent), ' ');
    column += columns + (column > 0 ? 1 : indent);
    out += word;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  out += '\n';
}

}  // namespace

std::string printable(std::string_view text) {
  std::string out;
  append_printable(out, text, false);
  return out;
}

void append_printable_lines(std::string& out, std::string_view text) {
  append_printable(out, text, true);
}

int display_width(std::string_view text) {
  int width = 0;
  while (!text.empty()) {
    const Character c = first_character(text);
    width += width_of(c.code);
    text.remove_prefix(c.length);
  }
  return width;
}

std::string cut_to_width(std::string_view text, int width) {
  if (width <= 0) return {};
  if (head_within(text, width) == text.size()) return std::string(text);
  std::string cut(text.substr(0, head_within(text, width - 1)));
  cut.erase(cut.find_last_not_of(' ') + 1);
  return cut += kEllipsis;
}

std::string wrapped(std::string_view text, int width, int indent) {
  std::string out;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    wrap_paragraph(out, text.substr(0, end), width, indent);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return out;
}

std::string shown_number(double value) {
  if (value == 0) return "0";  // -0 too
  std::string text = fmt::format("{:.6g}", value);
  const auto exponent = text.find('e');
  if (exponent == std::string::npos || std::abs(value) >= 1e15 || std::abs(value) < 1e-9) {
    return text;
  }
  const int magnitude = static_cast<int>(std::floor(std::log10(std::abs(value))));
  text = fmt::format("{:.{}f}", value, std::max(0, 5 - magnitude));
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string counted(std::size_t count, std::string_view thing) {
  return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

std::string lower_text(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  return lower;
}

int edit_distance(std::string_view a, std::string_view b) {
  const std::size_t columns = b.size() + 1;
  std::vector<int> d((a.size() + 1) * columns);
  const auto at = [&](std::size_t i, std::size_t j) -> int& { return d[i * columns + j]; };
  for (std::size_t i = 0; i <= a.size(); ++i) at(i, 0) = static_cast<int>(i);
  for (std::size_t j = 0; j <= b.size(); ++j) at(0, j) = static_cast<int>(j);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const int replaced = at(i - 1, j - 1) + (a[i - 1] == b[j - 1] ? 0 : 1);
      at(i, j) = std::min({at(i - 1, j) + 1, at(i, j - 1) + 1, replaced});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
    }
  }
  return at(a.size(), b.size());
}

}  // namespace tooldb

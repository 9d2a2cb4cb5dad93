#include "apps/text_table.h"

#include <algorithm>
#include <numeric>

#include "apps/display_text.h"

namespace tooldb {
namespace {

constexpr int kGap = 2;

void append_cell(std::string& line, const std::string& text, int width, bool right) {
  const std::string shown = cut_to_width(text, width);
  const auto blanks = static_cast<std::size_t>(std::max(0, width - display_width(shown)));
  if (right) line.append(blanks, ' ');
  line += shown;
  if (!right) line.append(blanks, ' ');
}

}  // namespace

void TextTable::AddRow(const std::vector<std::string>& cells) {
  auto& row = rows_.emplace_back();
  for (const auto& cell : cells) row.push_back(printable(cell));
  row.resize(columns_.size());
}

std::vector<int> TextTable::Widths(int available) const {
  std::vector<int> widths;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    int width = display_width(columns_[i].title);
    for (const auto& row : rows_) width = std::max(width, display_width(row[i]));
    widths.push_back(width);
  }
  int excess = std::accumulate(widths.begin(), widths.end(), 0) +
               kGap * (static_cast<int>(columns_.size()) - 1) - available;
  while (available > 0 && excess > 0) {
    int* widest = nullptr;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      const bool may_shrink = columns_[i].least > 0 && widths[i] > columns_[i].least;
      if (may_shrink && (widest == nullptr || widths[i] >= *widest)) widest = &widths[i];
    }
    if (widest == nullptr) break;
    --*widest;
    --excess;
  }
  return widths;
}

std::string TextTable::Text(int width, bool bold) const {
  const std::vector<int> widths = Widths(width);
  std::string text;
  const auto append_line = [&](const auto& cell_of, bool is_title) {
    std::string line;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (i > 0) line.append(kGap, ' ');
      append_cell(line, cell_of(i), widths[i], columns_[i].right);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    text += is_title ? "\033[1m" + line + "\033[0m\n" : line + '\n';
  };
  append_line([&](std::size_t i) -> const std::string& { return columns_[i].title; }, bold);
  for (const auto& row : rows_) {
    append_line([&](std::size_t i) -> const std::string& { return row[i]; }, false);
  }
  return text;
}

}  // namespace tooldb

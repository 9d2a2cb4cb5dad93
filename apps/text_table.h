#pragma once

#include <string>
#include <vector>

namespace tooldb {

/// Rows in aligned columns, as narrow as the terminal asks.
class TextTable {
 public:
  struct Column {
    std::string title;
    bool right = false;  ///< numbers stand at the right
    int least = 0;       ///< may be cut down to so many columns; 0: never cut
  };

  explicit TextTable(std::vector<Column> columns) : columns_(std::move(columns)) {}

  /// One cell per column; texts may hold anything.
  void AddRow(const std::vector<std::string>& cells);

  /// The table, its titles first.
  /// @param width  columns available; where the rows need more, the widest columns that may be cut
  ///               are cut with an ellipsis; 0: nothing is cut
  /// @param bold   mark the titles for a terminal
  std::string Text(int width, bool bold) const;

 private:
  std::vector<int> Widths(int available) const;

  std::vector<Column> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace tooldb

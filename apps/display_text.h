#pragma once

#include <functional>
#include <string>
#include <string_view>

/// @file
/// Texts of tools on a terminal: what can be printed, how wide it is, and where it can be cut.

namespace tooldb {

/// The text with every control character and every byte that is not UTF-8 replaced by U+FFFD, tabs
/// and line ends by a blank: nothing in a tool file can steer the terminal.
std::string printable(std::string_view text);
/// Appends the same, with line ends kept.
void append_printable_lines(std::string& out, std::string_view text);

/// Columns that a printable text takes: 0 for combining marks, 2 for wide characters.
int display_width(std::string_view text);

/// The text, cut with an ellipsis when it is wider than `width` columns; never inside a character,
/// and marks stay with the character that they belong to.
std::string cut_to_width(std::string_view text, int width);

/// The paragraphs of `text` in lines of at most `width` columns, each after `indent` blanks.
std::string wrapped(std::string_view text, int width, int indent);

/// A number for a person: the six significant digits that files hold, never an exponent where the
/// digits themselves are readable.
std::string shown_number(double value);

/// "1 file", "2 files".
std::string counted(std::size_t count, std::string_view thing);

/// The file-independent form of names that people type: ASCII letters in lower case.
std::string lower_text(std::string_view text);

/// The candidate that `word` was probably meant to be; empty when none is close. `name` is the
/// member that names a candidate, where it is not a text itself.
template <class Range, class Name = std::identity>
std::string_view nearest(std::string_view word, const Range& candidates, Name name = {});

/// Least number of letters to insert, delete, replace or swap to turn one text into the other.
int edit_distance(std::string_view a, std::string_view b);

template <class Range, class Name>
std::string_view nearest(std::string_view word, const Range& candidates, Name name) {
  std::string_view best;
  int best_distance = static_cast<int>(word.size()) / 3 + 2;
  for (const auto& row : candidates) {
    const std::string_view candidate = std::invoke(name, row);
    const int distance = edit_distance(word, candidate);
    if (distance >= best_distance) continue;
    best = candidate;
    best_distance = distance;
  }
  return best;
}

}  // namespace tooldb

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tooldb {

/// A piece of an expression.
struct QueryWord {
  enum class Kind { kWord, kQuoted, kComparison, kOpen, kClose, kAnd, kOr, kNot, kEnd } kind;
  std::string text;          ///< of a quoted text, without the quotes
  std::size_t position = 0;  ///< bytes before it
};

/// Splits an expression; the last piece is `kEnd`. Raises `QueryError`.
std::vector<QueryWord> query_words(std::string_view text);

}  // namespace tooldb

#include "apps/query_words.h"

#include <algorithm>
#include <array>

#include "apps/display_text.h"
#include "apps/query.h"

namespace tooldb {
namespace {

using Kind = QueryWord::Kind;

struct Sign {
  std::string_view text;
  Kind kind;
};

// Longer signs stand before those that they begin with.
constexpr auto kSigns = std::to_array<Sign>({{"==", Kind::kComparison},
                                             {"!=", Kind::kComparison},
                                             {"!~", Kind::kComparison},
                                             {"<=", Kind::kComparison},
                                             {">=", Kind::kComparison},
                                             {"<>", Kind::kComparison},
                                             {"=", Kind::kComparison},
                                             {"<", Kind::kComparison},
                                             {">", Kind::kComparison},
                                             {"~", Kind::kComparison},
                                             {"(", Kind::kOpen},
                                             {")", Kind::kClose},
                                             {"&&", Kind::kAnd},
                                             {"||", Kind::kOr},
                                             {"!", Kind::kNot}});

constexpr auto kKeywords = std::to_array<Sign>(
    {{"and", Kind::kAnd}, {"or", Kind::kOr}, {"not", Kind::kNot}, {"contains", Kind::kComparison}});

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kWordEnds = " \t\r\n()=!<>~'\"&|";

QueryWord quoted(std::string_view text, std::size_t at) {
  QueryWord word{Kind::kQuoted, "", at};
  const char quote = text[at];
  for (std::size_t i = at + 1; i < text.size(); ++i) {
    if (text[i] == quote) return word;
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    word.text += text[i];
  }
  throw QueryError("the quoted text is not closed", at);
}

// Bytes that a word takes in the expression.
std::size_t length_of(const QueryWord& word, std::string_view text) {
  if (word.kind != Kind::kQuoted) return word.text.size();
  std::size_t end = word.position + 1;
  while (text[end] != text[word.position]) end += text[end] == '\\' ? 2U : 1U;
  return end + 1 - word.position;
}

QueryWord word_at(std::string_view text, std::size_t at) {
  if (text[at] == '"' || text[at] == '\'') return quoted(text, at);
  const auto rest = text.substr(at);
  for (const Sign& sign : kSigns) {
    if (rest.starts_with(sign.text)) return {sign.kind, std::string(sign.text), at};
  }
  const std::string word(rest.substr(0, rest.find_first_of(kWordEnds)));
  if (word.empty()) throw QueryError("unexpected '" + std::string(1, text[at]) + "'", at);
  const auto keyword = std::ranges::find(kKeywords, lower_text(word), &Sign::text);
  return {keyword == kKeywords.end() ? Kind::kWord : keyword->kind, word, at};
}

}  // namespace

std::vector<QueryWord> query_words(std::string_view text) {
  std::vector<QueryWord> words;
  auto at = text.find_first_not_of(kBlanks);
  while (at != std::string_view::npos) {
    words.push_back(word_at(text, at));
    at = text.find_first_not_of(kBlanks, at + length_of(words.back(), text));
  }
  words.push_back({Kind::kEnd, "", text.size()});
  return words;
}

}  // namespace tooldb

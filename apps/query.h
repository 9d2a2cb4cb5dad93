#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// @file
/// Expressions that select tools:
///
///     expression = term, joined by "and" and "or"; "not" before a term; parentheses
///     term       = field, comparison, value; or a field alone: it has a value
///     comparison = "=" "!=" "<" "<=" ">" ">=" "~" (contains, also spelt so) "!~"
///     value      = a word, or a text in quotes; a number may end in mm, in or inch
///
/// "not" binds closest, then "and", then "or". Texts are compared without regard to the case of
/// ASCII letters, and as numbers where both are numbers.

namespace tooldb {

/// What a field can hold.
enum class FieldKind { kText, kNumber, kLength };

/// The value of one field of one tool.
struct FieldValue {
  std::string text;              ///< as shown to a person
  std::optional<double> number;  ///< the same as a number, if it is one
  bool inches = false;           ///< unit of a length
};

/// What is wrong with an expression, and where.
struct QueryError : std::runtime_error {
  QueryError(const std::string& message, std::size_t at)
      : std::runtime_error(message), position(at) {}
  std::size_t position;  ///< bytes before the fault
};

/// A parsed expression.
class Query {
 public:
  /// The kind of a field; nothing when there is no such field.
  using FieldKinds = std::function<std::optional<FieldKind>(std::string_view field)>;
  /// The value of a field of the tool at hand; nothing when it has none.
  using FieldValues = std::function<std::optional<FieldValue>(std::string_view field)>;

  /// Raises `QueryError`.
  static Query Parse(std::string_view text, const FieldKinds& kinds);

  bool Matches(const FieldValues& values) const;

  enum class Comparison {
    kIsSet,
    kEqual,
    kUnequal,
    kLess,
    kAtMost,
    kGreater,
    kAtLeast,
    kContains,
    kContainsNot
  };

  struct Term {
    std::string field;
    Comparison comparison = Comparison::kIsSet;
    std::string text;              ///< in lower case
    std::optional<double> number;  ///< in mm where `has_unit`
    bool has_unit = false;
  };

  /// One step of the expression in postfix order: a term, or an operation on what came before.
  struct Step {
    enum class Kind { kTerm, kNot, kAnd, kOr } kind;
    Term term;
  };

 private:
  std::vector<Step> steps_;
};

/// The value of a decimal number that is the whole text; nothing for any other text.
std::optional<double> parsed_number(std::string_view text);

/// Less, equal or greater than 0 as `a` comes before, with or after `b`: numbers by value (lengths
/// of different units in mm), then texts without regard to case, then what has no value.
int compare_values(const std::optional<FieldValue>& a, const std::optional<FieldValue>& b);

}  // namespace tooldb

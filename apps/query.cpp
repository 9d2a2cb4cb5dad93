#include "apps/query.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "apps/display_text.h"
#include "apps/query_words.h"

namespace tooldb {
namespace {

using Comparison = Query::Comparison;
using Kind = QueryWord::Kind;
using Step = Query::Step;
using Term = Query::Term;

constexpr double kMillimetresPerInch = 25.4;

struct Sign {
  std::string_view text;
  Comparison comparison;
};

constexpr auto kComparisons = std::to_array<Sign>({{"=", Comparison::kEqual},
                                                   {"==", Comparison::kEqual},
                                                   {"!=", Comparison::kUnequal},
                                                   {"<>", Comparison::kUnequal},
                                                   {"<", Comparison::kLess},
                                                   {"<=", Comparison::kAtMost},
                                                   {">", Comparison::kGreater},
                                                   {">=", Comparison::kAtLeast},
                                                   {"~", Comparison::kContains},
                                                   {"contains", Comparison::kContains},
                                                   {"!~", Comparison::kContainsNot}});

Comparison comparison_of(const QueryWord& word) {
  const std::string text = lower_text(word.text);
  return std::ranges::find(kComparisons, text, &Sign::text)->comparison;
}

bool is_containment(Comparison c) {
  return c == Comparison::kContains || c == Comparison::kContainsNot;
}

// "10mm" and "0.5in" as millimetres.
std::optional<double> number_with_unit(std::string_view text) {
  constexpr auto kUnits = std::to_array<std::pair<std::string_view, double>>(
      {{"mm", 1}, {"inch", kMillimetresPerInch}, {"in", kMillimetresPerInch}});
  for (const auto& [unit, factor] : kUnits) {
    if (!text.ends_with(unit)) continue;
    const auto number = parsed_number(text.substr(0, text.size() - unit.size()));
    return number ? std::optional(*number * factor) : std::nullopt;
  }
  return std::nullopt;
}

void set_value(Term& term, const QueryWord& word, FieldKind kind) {
  term.text = lower_text(word.text);
  term.number = parsed_number(word.text);
  if (!term.number && kind == FieldKind::kLength) {
    term.number = number_with_unit(term.text);
    term.has_unit = term.number.has_value();
  }
  if (!term.number && kind != FieldKind::kText && !is_containment(term.comparison)) {
    throw QueryError("'" + term.field + "' is a number, '" + word.text + "' is not", word.position);
  }
}

// Turns the words into postfix order. Operators wait on a stack of their own, so an expression
// may be nested as deeply as its length allows.
class Parser {
 public:
  Parser(std::vector<QueryWord> words, const Query::FieldKinds& kinds)
      : words_(std::move(words)), kinds_(kinds) {}

  std::vector<Step> Run() {
    bool complete = false;  // an operand has just ended
    for (; Word().kind != Kind::kEnd; ++next_) {
      if (complete) {
        complete = !ReadAfterOperand();
      } else {
        complete = ReadOperand();
      }
    }
    if (!complete) throw QueryError(At("expected a field"), Word().position);
    while (!waiting_.empty()) {
      if (waiting_.back().kind == Kind::kOpen) {
        throw QueryError("the parenthesis is not closed", waiting_.back().position);
      }
      Emit();
    }
    return std::move(steps_);
  }

 private:
  const QueryWord& Word() const { return words_[next_]; }

  std::string At(const std::string& expected) const {
    if (Word().kind == Kind::kEnd) return expected + " at the end";
    return expected + ", found '" + Word().text + "'";
  }

  // True when a whole operand was read.
  bool ReadOperand() {
    const Kind kind = Word().kind;
    if (kind == Kind::kNot || kind == Kind::kOpen) {
      waiting_.push_back(Word());
      return false;
    }
    if (kind != Kind::kWord) throw QueryError(At("expected a field"), Word().position);
    steps_.push_back({Step::Kind::kTerm, ReadTerm()});
    return true;
  }

  Term ReadTerm() {
    Term term;
    term.field = Word().text;
    const auto kind = kinds_(term.field);
    if (!kind) throw QueryError("no field is called '" + Word().text + "'", Word().position);
    if (words_[next_ + 1].kind != Kind::kComparison) return term;
    term.comparison = comparison_of(words_[++next_]);
    const std::string sign = Word().text;
    ++next_;
    if (Word().kind != Kind::kWord && Word().kind != Kind::kQuoted) {
      throw QueryError(At("expected a value after '" + sign + "'"), Word().position);
    }
    set_value(term, Word(), *kind);
    return term;
  }

  // True when the word asks for another operand.
  bool ReadAfterOperand() {
    switch (Word().kind) {
      case Kind::kAnd:
      case Kind::kOr:
        while (!waiting_.empty() && Binds(waiting_.back().kind) >= Binds(Word().kind)) Emit();
        waiting_.push_back(Word());
        return true;
      case Kind::kClose:
        while (!waiting_.empty() && waiting_.back().kind != Kind::kOpen) Emit();
        if (waiting_.empty()) throw QueryError("this parenthesis was not opened", Word().position);
        waiting_.pop_back();
        return false;
      default:
        throw QueryError(At("expected 'and' or 'or'"), Word().position);
    }
  }

  static int Binds(Kind kind) {
    return kind == Kind::kNot ? 3 : kind == Kind::kAnd ? 2 : kind == Kind::kOr ? 1 : 0;
  }

  void Emit() {
    const Kind kind = waiting_.back().kind;
    waiting_.pop_back();
    steps_.push_back({kind == Kind::kNot   ? Step::Kind::kNot
                      : kind == Kind::kAnd ? Step::Kind::kAnd
                                           : Step::Kind::kOr,
                      {}});
  }

  std::vector<QueryWord> words_;
  const Query::FieldKinds& kinds_;
  std::size_t next_ = 0;
  std::vector<QueryWord> waiting_;
  std::vector<Step> steps_;
};

template <class T>
bool holds(Comparison comparison, const T& a, const T& b) {
  switch (comparison) {
    case Comparison::kEqual:
      return a == b;
    case Comparison::kUnequal:
      return !(a == b);
    case Comparison::kLess:
      return a < b;
    case Comparison::kAtMost:
      return a <= b;
    case Comparison::kGreater:
      return a > b;
    case Comparison::kAtLeast:
      return a >= b;
    default:
      return false;
  }
}

// The value in the unit that the term asks for. One that differs from the term's only by the
// rounding of the conversion is the term's.
double in_unit_of(const Term& term, const FieldValue& value) {
  if (!term.has_unit || !value.inches) return *value.number;
  const double converted = *value.number * kMillimetresPerInch;
  return std::abs(converted - *term.number) <= 1e-9 * std::abs(converted) ? *term.number
                                                                          : converted;
}

bool is_set(const FieldValue& value) {
  return value.number ? *value.number != 0 : !value.text.empty();
}

bool holds(const Term& term, const std::optional<FieldValue>& value) {
  const bool negative =
      term.comparison == Comparison::kUnequal || term.comparison == Comparison::kContainsNot;
  if (!value) return negative;
  if (term.comparison == Comparison::kIsSet) return is_set(*value);
  const std::string text = lower_text(value->text);
  if (is_containment(term.comparison)) {
    return (text.find(term.text) != std::string::npos) != negative;
  }
  if (term.number && value->number) {
    return holds(term.comparison, in_unit_of(term, *value), *term.number);
  }
  return holds(term.comparison, text, term.text);
}

}  // namespace

Query Query::Parse(std::string_view text, const FieldKinds& kinds) {
  Query query;
  query.steps_ = Parser(query_words(text), kinds).Run();
  return query;
}

bool Query::Matches(const FieldValues& values) const {
  std::vector<bool> stack;
  for (const Step& step : steps_) {
    if (step.kind == Step::Kind::kTerm) {
      stack.push_back(holds(step.term, values(step.term.field)));
    } else if (step.kind == Step::Kind::kNot) {
      stack.back() = !stack.back();
    } else {
      const bool right = stack.back();
      stack.pop_back();
      const bool left = stack.back();
      stack.back() = step.kind == Step::Kind::kAnd ? left && right : left || right;
    }
  }
  return stack.back();
}

std::optional<double> parsed_number(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && value - value == 0 ? std::optional(value) : std::nullopt;
}

int compare_values(const std::optional<FieldValue>& a, const std::optional<FieldValue>& b) {
  if (!a || !b) return static_cast<int>(b.has_value()) - static_cast<int>(a.has_value());
  if (a->number && b->number) {
    const bool same_unit = a->inches == b->inches;
    const double x = *a->number * (!same_unit && a->inches ? kMillimetresPerInch : 1);
    const double y = *b->number * (!same_unit && b->inches ? kMillimetresPerInch : 1);
    return x < y ? -1 : static_cast<int>(x > y);
  }
  if (a->number || b->number) return a->number ? -1 : 1;
  const std::string x = lower_text(a->text);
  const std::string y = lower_text(b->text);
  return x < y ? -1 : static_cast<int>(x > y);
}

}  // namespace tooldb

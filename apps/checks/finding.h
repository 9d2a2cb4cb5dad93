#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tooldb {

/// Something that is wrong, or looks wrong, in a library.
struct Finding {
  enum class Severity { kError, kWarning };

  std::string path;
  std::size_t line = 0;  ///< 0: not known
  Severity severity = Severity::kError;
  std::string_view rule;
  std::string message;
  std::string_view remedy;
  std::string repair{};  ///< what was done about it; empty: nothing
};

/// What the checks find.
class Findings {
 public:
  /// A rule of the check: its name, how bad a breach is, and what to do about one.
  struct Rule {
    std::string_view name;
    Finding::Severity severity;
    std::string_view remedy;
  };

  void Add(const Rule& rule, const std::string& path, std::size_t line, std::string message) {
    list_.push_back({path, line, rule.severity, rule.name, std::move(message), rule.remedy, {}});
  }
  const std::vector<Finding>& All() const { return list_; }
  std::vector<Finding>& All() { return list_; }

 private:
  std::vector<Finding> list_;
};

/// The line that a message of the reader names; 0 when it names none.
std::size_t line_in(std::string_view message);

}  // namespace tooldb

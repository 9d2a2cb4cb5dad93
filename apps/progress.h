#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace tooldb {

class Console;

/// A bar on standard error for work that takes more than a second. It is drawn on a terminal only,
/// never with `--quiet`, and wiped away when the work ends.
class Progress {
 public:
  Progress(const Console& console, std::string label, std::size_t total);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// One of `total` pieces of work is done.
  void Step();
  /// Wipes the bar away before something else is printed; the next step draws it again.
  void Hide();

 private:
  void Draw() const;

  using Clock = std::chrono::steady_clock;

  std::string label_;
  std::size_t total_;
  std::size_t done_ = 0;
  Clock::time_point next_draw_;
  bool enabled_;
  bool drawn_ = false;
};

}  // namespace tooldb

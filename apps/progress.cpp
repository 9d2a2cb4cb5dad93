#include "apps/progress.h"

#include <fmt/format.h>

#include <cstdio>

#include "apps/console.h"
#include "apps/terminal.h"

namespace tooldb {
namespace {

constexpr std::size_t kCells = 30;
constexpr auto kPatience = std::chrono::seconds(1);
constexpr auto kInterval = std::chrono::milliseconds(100);

void write(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); }

}  // namespace

Progress::Progress(const Console& console, std::string label, std::size_t total)
    : label_(std::move(label)),
      total_(total),
      next_draw_(Clock::now() + kPatience),
      enabled_(!console.IsQuiet() && is_terminal(stderr)) {}

Progress::~Progress() { Hide(); }

void Progress::Step() {
  ++done_;
  if (!enabled_ || Clock::now() < next_draw_) return;
  next_draw_ = Clock::now() + kInterval;
  Draw();
  drawn_ = true;
}

void Progress::Hide() {
  if (drawn_) write("\r\033[K");
  drawn_ = false;
}

void Progress::Draw() const {
  const std::size_t filled = total_ == 0 ? kCells : kCells * done_ / total_;
  write(fmt::format("\r{} [{:#>{}}{:.>{}}] {}/{}\033[K", label_, "", filled, "", kCells - filled,
                    done_, total_));
}

}  // namespace tooldb

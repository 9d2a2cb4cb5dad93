#include "apps/console.h"

#include <string>

#include "apps/display_text.h"
#include "apps/terminal.h"

namespace tooldb {
namespace {

constexpr std::string_view kRed = "\033[31m";
constexpr std::string_view kYellow = "\033[33m";
constexpr std::string_view kPlain = "\033[0m";

bool may_color(std::FILE* stream) {
  return is_terminal(stream) && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
}

void write(std::FILE* stream, std::string_view bytes) {
  std::fwrite(bytes.data(), 1, bytes.size(), stream);
}

}  // namespace

Console::Console() : color_out_(may_color(stdout)), color_err_(may_color(stderr)) {
  use_binary_output();
}

void Console::Print(std::string_view text) { write(stdout, text); }

void Console::Note(std::string_view line) {
  if (!quiet_) Message("", "", line);
}

void Console::Warn(std::string_view line) { Message("warning: ", kYellow, line); }

void Console::Error(std::string_view line) {
  failed_ = true;
  Message("error: ", kRed, line);
}

bool Console::Failed() {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return failed_;
  Error("standard output cannot be written");
  return true;
}

void Console::Message(std::string_view label, std::string_view color, std::string_view line) {
  if (muted_) return;
  std::fflush(stdout);
  std::string text;
  if (color_err_) text += color;
  text += label;
  if (color_err_ && !color.empty()) text += kPlain;
  append_printable_lines(text, line);
  text += '\n';
  write(stderr, text);
}

}  // namespace tooldb

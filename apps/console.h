#pragma once

#include <cstdio>
#include <string_view>

/// @file
/// Where a command prints: results to standard output, messages to standard error.

namespace tooldb {

class Console {
 public:
  Console();

  /// A result: printed as it stands, byte for byte.
  void Print(std::string_view text);
  /// A line about what was done; silent with `--quiet`.
  void Note(std::string_view line);
  /// A line about something that the user should look at.
  void Warn(std::string_view line);
  /// A line about something that went wrong; the program's exit code will be 1.
  void Error(std::string_view line);
  /// True once an error was printed, or when standard output could not be written.
  bool Failed();

  /// The exit code will be 1; what went wrong was printed already.
  void Fail() { failed_ = true; }
  /// Nothing is printed from now on.
  void Mute() { muted_ = true; }
  void SetQuiet(bool quiet) { quiet_ = quiet; }
  bool IsQuiet() const { return quiet_; }
  /// True when results go to a terminal and the user has nothing against colours.
  bool UsesColor() const { return color_out_; }

 private:
  void Message(std::string_view label, std::string_view color, std::string_view line);

  bool quiet_ = false;
  bool failed_ = false;
  bool muted_ = false;
  bool color_out_;
  bool color_err_;
};

}  // namespace tooldb

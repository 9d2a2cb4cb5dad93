#include "apps/terminal.h"

#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
//
#include <fcntl.h>
#include <io.h>
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace tooldb {

#ifdef _WIN32

bool is_terminal(std::FILE* stream) { return _isatty(_fileno(stream)) != 0; }

std::optional<int> terminal_width() {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info)) return std::nullopt;
  return info.srWindow.Right - info.srWindow.Left + 1;
}

void use_binary_output() { _setmode(_fileno(stdout), _O_BINARY); }

#else

bool is_terminal(std::FILE* stream) { return isatty(fileno(stream)) != 0; }

std::optional<int> terminal_width() {
  winsize size{};
  if (!is_terminal(stdout) || ioctl(fileno(stdout), TIOCGWINSZ, &size) != 0) return std::nullopt;
  return size.ws_col > 0 ? std::optional<int>(size.ws_col) : std::nullopt;
}

void use_binary_output() {}

#endif

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

}  // namespace tooldb

#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <exception>
#include <stdexcept>

namespace torture {

/// Runs `body` in a process of its own, which ends with 0 when no exception leaves it.
template <class Body>
pid_t start(Body&& body) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot fork");
  if (child > 0) return child;
  try {
    body();
    _exit(0);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "torture: %s\n", error.what());
    _exit(1);
  }
}

/// Waits for a process; its status as waitpid() has it.
inline int ended(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

}  // namespace torture

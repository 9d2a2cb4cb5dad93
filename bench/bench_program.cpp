#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include "bench/benchmarks.h"
#include "bench/sample_tools.h"
#include "tooldb/tool_db.h"

extern char** environ;

namespace bench {
namespace {

double in_seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

/// Processor time of the program from its start to its end, its output thrown away.
double run(const std::filesystem::path& program, std::string command, std::string folder) {
  std::string name = program.string();
  char* const argv[] = {name.data(), command.data(), folder.data(), nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int failure = posix_spawn(&child, program.c_str(), &actions, nullptr, argv, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failure != 0) throw std::runtime_error("cannot start " + program.string());
  int status = 0;
  rusage used{};
  wait4(child, &status, 0, &used);
  if (!WIFEXITED(status) || WEXITSTATUS(status) > 1) throw std::runtime_error("the program failed");
  return in_seconds(used.ru_utime) + in_seconds(used.ru_stime);
}

}  // namespace

std::vector<Figure> bench_program(const Options& options) {
  if (options.program.empty()) return {};
  const int count = options.quick ? 500 : 10000;
  const ScratchFolder folder(options);
  make_library(folder.Path(), count);
  const auto read = [&] {
    tdbToolDB db("bench", 0);
    db.Init(folder.Text());
    return cpu_seconds([&db] { db.Read(); });
  };
  const auto figure = [&](const char* command, double goal) {
    return compare(
        {.operation = std::string("tooldb ") + command + " / Read in the library",
         .size = std::to_string(count) + " tools",
         .goal = goal},
        options.rounds, [&] { return run(options.program, command, folder.Text()); }, read);
  };
  return {figure("list", 1.2), figure("check", 1.5)};
}

}  // namespace bench

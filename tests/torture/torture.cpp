#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <random>
#include <stdexcept>
#include <thread>

#include "operations.h"

namespace {

namespace fs = std::filesystem;
using torture::Faults;
using torture::Operation;

constexpr int kTools = 6;  // few, so that a kill falls into every part of a change

constexpr const char* kUsage =
    "usage: torture kill OPERATION FOLDER RUNS   kill at random moments, RUNS times\n"
    "       torture syscalls OPERATION FOLDER    kill at every file system call, one by one\n"
    "       torture prepare|act|verify OPERATION FOLDER LOG   the parts, for other drivers\n"
    "       torture list                         the operations\n";

/// Appends a line to the log for every report, so that it outlives this process.
void act(const Operation& operation, const fs::path& folder, const fs::path& log) {
  const int file = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (file < 0) throw std::runtime_error("cannot open " + log.string());
  operation.act(folder, kTools, [file](int tools) {
    const std::string line = std::to_string(tools) + "\n";
    if (write(file, line.data(), line.size()) < 0) throw std::runtime_error("cannot log");
  });
  close(file);
}

int acknowledged(const fs::path& log) {
  int tools = 0;
  if (std::FILE* file = std::fopen(log.c_str(), "r")) {
    for (int line = 0; std::fscanf(file, "%d", &line) == 1;) tools = line;
    std::fclose(file);
  }
  return tools;
}

/// Runs `body` in a process of its own; 0 when it ends without an exception.
template <class F>
pid_t start(F&& body) {
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

int ended(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

/// Verifies in a process that shares no state with the one that was killed.
Faults verify_afresh(const Operation& operation, const fs::path& folder, const fs::path& log) {
  int channel[2];
  if (pipe(channel) != 0) throw std::runtime_error("cannot make a pipe");
  const pid_t child = start([&] {
    const Faults found = torture::verify(operation, folder, kTools, acknowledged(log));
    const std::string line = std::to_string(found.half_written) + " " + std::to_string(found.lost) +
                             " " + std::to_string(found.doubled) + " " +
                             std::to_string(found.missing) + " " + std::to_string(found.listed) +
                             " " + found.first + "\n";
    if (write(channel[1], line.data(), line.size()) < 0) throw std::runtime_error("cannot report");
  });
  close(channel[1]);
  Faults faults;
  std::FILE* report = fdopen(channel[0], "r");
  char first[512] = "";
  const int fields =
      std::fscanf(report, "%d %d %d %d %d %511[^\n]", &faults.half_written, &faults.lost,
                  &faults.doubled, &faults.missing, &faults.listed, first);
  std::fclose(report);
  faults.first = first;
  if (ended(child) != 0 || fields < 5) throw std::runtime_error("the verifying process failed");
  return faults;
}

void print(const char* how, const Operation& operation, int runs, int interrupted,
           const Faults& faults) {
  std::printf(
      "%-9s %-18s %6d runs %6d interrupted %4d half-written %4d lost %4d doubled %4d "
      "missing %4d misread\n",
      how, std::string(operation.name).c_str(), runs, interrupted, faults.half_written, faults.lost,
      faults.doubled, faults.missing, faults.listed);
  if (faults.Total() > 0) std::printf("          first: %s\n", faults.first.c_str());
}

double seconds_of(const Operation& operation, const fs::path& folder, const fs::path& log) {
  torture::prepare(operation, folder, kTools);
  fs::remove(log);
  const auto begin = std::chrono::steady_clock::now();
  if (ended(start([&] { act(operation, folder, log); })) != 0) {
    throw std::runtime_error("the operation fails even when left alone");
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

int kill_at_random(const Operation& operation, const fs::path& folder, int runs) {
  const fs::path log = folder.string() + ".log";
  std::mt19937 random(std::random_device{}());
  const double whole = seconds_of(operation, folder, log);
  std::uniform_real_distribution<double> moment(0, 1.1 * whole);
  Faults faults;
  int interrupted = 0;
  for (int run = 0; run < runs; ++run) {
    torture::prepare(operation, folder, kTools);
    fs::remove(log);
    const pid_t child = start([&] { act(operation, folder, log); });
    std::this_thread::sleep_for(std::chrono::duration<double>(moment(random)));
    kill(child, SIGKILL);
    const int status = ended(child);
    if (WIFSIGNALED(status)) ++interrupted;
    faults += verify_afresh(operation, folder, log);
  }
  print("kill", operation, runs, interrupted, faults);
  return faults.Total();
}

constexpr const char* kFileCalls =
    "?open,openat,?creat,write,pwrite64,writev,fsync,fdatasync,close,?rename,renameat,renameat2,"
    "?link,linkat,?unlink,unlinkat,?mkdir,mkdirat,ftruncate,?chmod,fchmod,?rmdir";

int kill_at_every_call(const Operation& operation, const fs::path& folder, const char* self) {
  const fs::path log = folder.string() + ".log";
  Faults faults;
  int call = 0;
  for (bool finished = false; !finished;) {
    ++call;
    torture::prepare(operation, folder, kTools);
    fs::remove(log);
    const std::string inject =
        std::string("inject=") + kFileCalls + ":signal=KILL:when=" + std::to_string(call);
    const std::string name(operation.name);
    const pid_t child = fork();
    if (child == 0) {
      execlp("strace", "strace", "-f", "-qq", "-o", "/dev/null", "-e",
             (std::string("trace=") + kFileCalls).c_str(), "-e", inject.c_str(), self, "act",
             name.c_str(), folder.c_str(), log.c_str(), nullptr);
      _exit(127);
    }
    const int status = ended(child);
    finished = WIFEXITED(status);
    if (finished && WEXITSTATUS(status) != 0) {
      throw std::runtime_error("strace or the operation failed");
    }
    faults += verify_afresh(operation, folder, log);
  }
  print("syscall", operation, call, call - 1, faults);
  return faults.Total();
}

}  // namespace

int main(int argc, char** argv) try {
  const std::string verb = argc > 1 ? argv[1] : "";
  if (verb == "list") {
    for (const Operation& operation : torture::operations()) {
      std::printf("%s\n", std::string(operation.name).c_str());
    }
    return 0;
  }
  const Operation* operation = argc > 3 ? torture::find_operation(argv[2]) : nullptr;
  if (operation == nullptr) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  const fs::path folder = fs::absolute(argv[3]);
  if (verb == "kill" && argc == 5) {
    return kill_at_random(*operation, folder, std::atoi(argv[4])) == 0 ? 0 : 1;
  }
  if (verb == "syscalls" && argc == 4) {
    return kill_at_every_call(*operation, folder, fs::read_symlink("/proc/self/exe").c_str()) == 0
               ? 0
               : 1;
  }
  if (verb == "prepare" && argc == 5) {
    torture::prepare(*operation, folder, kTools);
    return 0;
  }
  if (verb == "act" && argc == 5) {
    act(*operation, folder, argv[4]);
    return 0;
  }
  if (verb == "verify" && argc == 5) {
    const Faults faults = verify_afresh(*operation, folder, argv[4]);
    if (faults.Total() > 0) std::printf("%s\n", faults.first.c_str());
    return faults.Total() == 0 ? 0 : 1;
  }
  std::fputs(kUsage, stderr);
  return 2;
} catch (const std::exception& error) {
  std::fprintf(stderr, "torture: %s\n", error.what());
  return 1;
}

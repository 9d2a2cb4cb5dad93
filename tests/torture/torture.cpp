#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <vector>

#include "child_process.h"
#include "operations.h"
#include "together.h"

namespace {

namespace fs = std::filesystem;
using torture::ended;
using torture::Faults;
using torture::Operation;
using torture::start;

// Few, so that a kill falls into every part of a change, but enough for an import to flush the
// files at a stroke.
constexpr int kTools = 10;
constexpr int kFewTools = 2;  // where every call is met in turn

/// One change to be disturbed.
struct Job {
  const Operation& operation;
  fs::path folder;
  int tools;

  std::string Log() const { return folder.string() + ".log"; }  ///< of what was reported done
};

constexpr const char* kUsage =
    "usage: torture kill OPERATION FOLDER KILLS   kill at random moments, KILLS times\n"
    "       torture syscalls OPERATION FOLDER    kill at every file system call, one by one\n"
    "       torture failures OPERATION FOLDER    fail every file system call, once and for ever\n"
    "       torture full OPERATION FOLDER        files that may grow to N bytes only, for each N\n"
    "       torture together FOLDER              several processes in one folder\n"
    "       torture prepare|act|verify OPERATION FOLDER LOG [TOOLS]   the parts, for other "
    "drivers\n"
    "       torture list                         the operations\n";

/// Appends a line to the log for every report, so that it outlives this process.
void act(const Job& job, const fs::path& log) {
  const int file = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (file < 0) throw std::runtime_error("cannot open " + log.string());
  job.operation.act(job.folder, job.tools, [file](int tools) {
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

/// Verifies in a process that shares no state with the one that was killed.
Faults verify_afresh(const Job& job, const fs::path& log) {
  int channel[2];
  if (pipe(channel) != 0) throw std::runtime_error("cannot make a pipe");
  const pid_t child = start([&] {
    const Faults found = torture::verify(job.operation, job.folder, job.tools, acknowledged(log));
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

double seconds_of(const Job& job) {
  torture::prepare(job.operation, job.folder, job.tools);
  fs::remove(job.Log());
  const auto begin = std::chrono::steady_clock::now();
  if (ended(start([&] { act(job, job.Log()); })) != 0) {
    throw std::runtime_error("the operation fails even when left alone");
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

int kill_at_random(const Job& job, int kills) {
  std::mt19937 random(std::random_device{}());
  const double whole = std::min({seconds_of(job), seconds_of(job), seconds_of(job)});
  std::uniform_real_distribution<double> moment(0, 1.1 * whole);
  Faults faults;
  int runs = 0;
  for (int interrupted = 0; interrupted < kills; ++runs) {
    torture::prepare(job.operation, job.folder, job.tools);
    fs::remove(job.Log());
    const pid_t child = start([&] { act(job, job.Log()); });
    std::this_thread::sleep_for(std::chrono::duration<double>(moment(random)));
    kill(child, SIGKILL);
    const int status = ended(child);
    if (WIFSIGNALED(status)) ++interrupted;
    faults += verify_afresh(job, job.Log());
  }
  print("kill", job.operation, runs, kills, faults);
  return faults.Total();
}

constexpr const char* kFileCalls =
    "?open,openat,?creat,read,write,pwrite64,writev,fsync,fdatasync,close,?rename,renameat,"
    "renameat2,?link,linkat,?unlink,unlinkat,?mkdir,mkdirat,ftruncate,?chmod,fchmod,?rmdir,"
    "getdents64,?stat,?lstat,newfstatat,statx";

/// Runs the change in a fresh process under strace, its calls written to `trace`.
/// @param inject  what strace does to the calls; empty: nothing
int run_traced(const Job& job, const fs::path& trace, const std::string& inject) {
  torture::prepare(job.operation, job.folder, job.tools);
  const std::string log = job.Log();
  fs::remove(log);
  const std::string self = fs::read_symlink("/proc/self/exe").string();
  const std::string calls = std::string("trace=") + kFileCalls;
  const std::string injected = std::string("inject=") + kFileCalls + inject;
  const std::string name(job.operation.name);
  const std::string tools = std::to_string(job.tools);
  std::vector<const char*> argv{"strace", "-qq", "-o", trace.c_str(), "-e", calls.c_str()};
  if (!inject.empty()) argv.insert(argv.end(), {"-e", injected.c_str()});
  argv.insert(argv.end(), {self.c_str(), "act", name.c_str(), job.folder.c_str(), log.c_str(),
                           tools.c_str(), nullptr});
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDERR_FILENO);  // the failures are wanted
    execvp("strace", const_cast<char* const*>(argv.data()));
    _exit(127);
  }
  return ended(child);
}

struct Calls {
  int first = 0;  ///< the first one of the change itself; those before load the program
  int last = 0;
};

Calls count_calls(const Job& job) {
  const fs::path trace = job.folder.string() + ".trace";
  if (run_traced(job, trace, "") != 0) {
    throw std::runtime_error("strace is missing, or the operation fails even when left alone");
  }
  Calls calls;
  std::ifstream lines(trace);
  for (std::string line; std::getline(lines, line);) {
    ++calls.last;
    if (calls.first == 0 && line.find(job.Log()) != std::string::npos) calls.first = calls.last + 1;
  }
  return calls;
}

int kill_at_every_call(const Job& job) {
  const Calls calls = count_calls(job);
  Faults faults;
  for (int call = calls.first; call <= calls.last; ++call) {
    run_traced(job, "/dev/null", ":signal=KILL:when=" + std::to_string(call));
    faults += verify_afresh(job, job.Log());
  }
  print("syscall", job.operation, calls.last - calls.first + 1, calls.last - calls.first + 1,
        faults);
  return faults.Total();
}

int fail_every_call(const Job& job) {
  const Calls calls = count_calls(job);
  Faults faults;
  int runs = 0;
  int reported = 0;
  for (const char* error : {"ENOSPC", "EIO", "EACCES", "EMFILE", "EINTR"}) {
    for (const char* lasting : {"", "+"}) {
      // A call that is interrupted for ever after is made for ever after.
      if (std::string_view(error) == "EINTR" && *lasting != 0) continue;
      for (int call = calls.first; call <= calls.last; ++call) {
        const int status =
            run_traced(job, "/dev/null",
                       std::string(":error=") + error + ":when=" + std::to_string(call) + lasting);
        ++runs;
        if (status != 0) ++reported;
        faults += verify_afresh(job, job.Log());
      }
    }
  }
  print("failure", job.operation, runs, reported, faults);
  return faults.Total();
}

/// No file may grow beyond some size: a write is cut short there, and the next one fails.
int limit_file_size(const Job& job) {
  constexpr rlim_t kStep = 512;
  constexpr rlim_t kMost = 16384;  // more than a tool has
  Faults faults;
  int runs = 0;
  int reported = 0;
  for (rlim_t size = 0; size <= kMost; size += kStep) {
    torture::prepare(job.operation, job.folder, job.tools);
    fs::remove(job.Log());
    std::ofstream(job.Log()).close();
    const pid_t child = start([&] {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit limit{size + kStep / 2, RLIM_INFINITY};
      if (setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("cannot set the limit");
      std::freopen("/dev/null", "w", stderr);  // the failures are wanted
      act(job, job.Log());
    });
    ++runs;
    if (ended(child) != 0) ++reported;
    faults += verify_afresh(job, job.Log());
  }
  print("full", job.operation, runs, reported, faults);
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
  if (verb == "together" && argc == 3) {
    const int faults = torture::work_together(fs::absolute(argv[2]));
    std::printf("together  %d faults\n", faults);
    return faults == 0 ? 0 : 1;
  }
  const Operation* operation = argc > 3 ? torture::find_operation(argv[2]) : nullptr;
  if (operation == nullptr) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  const auto job = [&](int tools) { return Job{*operation, fs::absolute(argv[3]), tools}; };
  if (verb == "kill" && argc == 5)
    return kill_at_random(job(kTools), std::atoi(argv[4])) == 0 ? 0 : 1;
  if (verb == "syscalls" && argc == 4) return kill_at_every_call(job(kFewTools)) == 0 ? 0 : 1;
  if (verb == "full" && argc == 4) return limit_file_size(job(kFewTools)) == 0 ? 0 : 1;
  if (verb == "failures" && argc == 4) return fail_every_call(job(kFewTools)) == 0 ? 0 : 1;
  const Job part = job(argc == 6 ? std::atoi(argv[5]) : kTools);
  if (verb == "prepare" && argc >= 5) {
    torture::prepare(*operation, part.folder, part.tools);
    return 0;
  }
  if (verb == "act" && argc >= 5) {
    act(part, argv[4]);
    return 0;
  }
  if (verb == "verify" && argc >= 5) {
    const Faults faults = verify_afresh(part, argv[4]);
    if (faults.Total() > 0) std::printf("%s\n", faults.first.c_str());
    return faults.Total() == 0 ? 0 : 1;
  }
  std::fputs(kUsage, stderr);
  return 2;
} catch (const std::exception& error) {
  std::fprintf(stderr, "torture: %s\n", error.what());
  return 1;
}

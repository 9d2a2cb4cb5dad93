#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <map>
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
using torture::Operation;
using torture::start;

// Few, so that a kill falls into every part of a change, but enough for an import or an export to
// flush the files at a stroke.
constexpr int kTools = 10;
constexpr int kFewTools = 2;  // where every call is met in turn

constexpr const char* kUsage =
    "usage: torture kill OPERATION FOLDER KILLS   kill at random moments, KILLS times\n"
    "       torture full OPERATION FOLDER        files that may grow to N bytes only, for each N\n"
    "       torture syscalls OPERATION FOLDER [TOOLS]   kill at every file system call, one by "
    "one\n"
    "       torture failures OPERATION FOLDER [TOOLS]   fail each of them, once and for ever\n"
    "       torture together FOLDER              several processes in one folder\n"
    "       torture prepare|act|verify OPERATION FOLDER LOG [TOOLS]   the parts, for other "
    "drivers\n"
    "       torture list                         the operations\n";

/// One change to be disturbed.
struct Job {
  const Operation& operation;
  fs::path folder;
  int tools;
  fs::path log = folder.string() + ".log";  ///< of what was reported done

  void Prepare() const {
    torture::prepare(operation, folder, tools);
    fs::remove(log);
  }
};

/// Appends a line to the log for every report, so that it outlives this process.
void act(const Job& job) {
  const int file = open(job.log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
  if (file < 0) throw std::runtime_error("cannot open " + job.log.string());
  torture::act(job.operation, job.folder, job.tools, [file](int tools) {
    const std::string line = std::to_string(tools) + "\n";
    if (write(file, line.data(), line.size()) < 0) throw std::runtime_error("cannot log");
  });
  close(file);
}

/// Prints what is wrong with the folder; true when nothing is.
bool verify(const Job& job) {
  int acknowledged = 0;
  std::ifstream log(job.log);
  for (int line = 0; log >> line;) acknowledged = line;
  const auto complaints = torture::verify(job.operation, job.folder, job.tools, acknowledged);
  for (const std::string& words : complaints) std::fprintf(stderr, "%s\n", words.c_str());
  return complaints.empty();
}

/// Runs of one change, each disturbed and looked at afterwards.
class Runs {
 public:
  explicit Runs(const Job& job) : job_(job) {}

  int Interrupted() const { return interrupted_; }
  /// Verifies in a process that shares no state with the one that was disturbed.
  /// @param status  how that one ended
  void Look(int status) {
    const int verdict = ended(start([this] {
      if (!verify(job_)) throw std::runtime_error("damaged");
    }));
    ++runs_;
    if (status != 0) ++interrupted_;
    if (verdict != 0) ++faulty_;
  }
  /// The exit code. Runs that nothing has disturbed prove nothing.
  int Print(const char* how, int fewest_interrupted = 1) const {
    std::printf("%-9s %-18s %6d runs %6d interrupted %4d with a fault\n", how,
                std::string(job_.operation.name).c_str(), runs_, interrupted_, faulty_);
    return faulty_ == 0 && interrupted_ >= fewest_interrupted ? 0 : 1;
  }

 private:
  const Job& job_;
  int runs_ = 0;
  int interrupted_ = 0;
  int faulty_ = 0;
};

double seconds_of(const Job& job) {
  job.Prepare();
  const auto begin = std::chrono::steady_clock::now();
  if (ended(start([&] { act(job); })) != 0) {
    throw std::runtime_error("the operation fails even when left alone");
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

int kill_at_random(const Job& job, int kills) {
  std::mt19937 random(std::random_device{}());
  const double whole = std::min({seconds_of(job), seconds_of(job), seconds_of(job)});
  std::uniform_real_distribution<double> moment(0, 1.1 * whole);
  Runs runs(job);
  while (runs.Interrupted() < kills) {
    job.Prepare();
    const pid_t child = start([&] { act(job); });
    std::this_thread::sleep_for(std::chrono::duration<double>(moment(random)));
    kill(child, SIGKILL);
    runs.Look(ended(child));
  }
  return runs.Print("kill");
}

// "?": not every system has it.
constexpr const char* kFileCalls[] = {
    "?open",  "openat",    "?creat",     "read",    "write",    "pwrite64",   "writev",
    "fsync",  "fdatasync", "close",      "?rename", "renameat", "renameat2",  "?link",
    "linkat", "?unlink",   "unlinkat",   "?mkdir",  "mkdirat",  "ftruncate",  "?chmod",
    "fchmod", "?rmdir",    "getdents64", "?stat",   "?lstat",   "newfstatat", "statx"};

/// A file call of the change. strace counts the calls of each name apart, from the program's start.
struct Call {
  std::string name;
  std::map<std::string, int> counts;  ///< up to this one, by name
};

/// What strace does to calls, an option each.
using Injections = std::vector<std::string>;

Injections at_call(const Call& call, const std::string& what) {
  return {"inject=" + call.name + what + ":when=" + std::to_string(call.counts.at(call.name))};
}

Injections from_call_on(const Call& call, const std::string& what) {
  Injections injections;
  for (const std::string shown : kFileCalls) {
    const std::string name = shown.substr(shown[0] == '?' ? 1 : 0);
    const auto counted = call.counts.find(name);
    const int before = counted == call.counts.end() ? 0 : counted->second;
    const int first = name == call.name ? before : before + 1;
    injections.push_back("inject=" + shown + what + ":when=" + std::to_string(first) + '+');
  }
  return injections;
}

/// Runs the change in a fresh process under strace, its calls written to `trace`.
int run_traced(const Job& job, const fs::path& trace, const Injections& injections) {
  job.Prepare();
  const std::string self = fs::read_symlink("/proc/self/exe").string();
  std::string calls = "trace=";
  for (const char* name : kFileCalls) calls += std::string(name) + ',';
  calls.pop_back();
  const std::string name(job.operation.name);
  const std::string tools = std::to_string(job.tools);
  std::vector<const char*> argv{"strace", "-qq", "-o", trace.c_str(), "-e", calls.c_str()};
  for (const auto& injection : injections) argv.insert(argv.end(), {"-e", injection.c_str()});
  argv.insert(argv.end(), {self.c_str(), "act", name.c_str(), job.folder.c_str(), job.log.c_str(),
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

/// The calls of the change itself; those before load the program.
std::vector<Call> calls_of(const Job& job) {
  const fs::path trace = job.folder.string() + ".trace";
  if (run_traced(job, trace, {}) != 0) {
    throw std::runtime_error("strace is missing, or the operation fails even when left alone");
  }
  std::vector<Call> calls;
  Call call;
  bool begun = false;
  std::ifstream lines(trace);
  for (std::string line; std::getline(lines, line);) {
    call.name = line.substr(0, line.find('('));
    ++call.counts[call.name];
    if (begun) calls.push_back(call);
    begun = begun || line.find(job.log.string()) != std::string::npos;
  }
  return calls;
}

int kill_at_every_call(const Job& job) {
  Runs runs(job);
  const std::vector<Call> calls = calls_of(job);
  for (const Call& call : calls) {
    runs.Look(run_traced(job, "/dev/null", at_call(call, ":signal=KILL")));
  }
  return runs.Print("syscall", static_cast<int>(calls.size()));
}

int fail_every_call(const Job& job) {
  Runs runs(job);
  const std::vector<Call> calls = calls_of(job);
  for (const std::string error : {"ENOSPC", "EIO", "EACCES", "EMFILE", "EINTR"}) {
    for (const Call& call : calls) {
      runs.Look(run_traced(job, "/dev/null", at_call(call, ":error=" + error)));
      // A call that is interrupted for ever after is made for ever after.
      if (error == "EINTR") continue;
      runs.Look(run_traced(job, "/dev/null", from_call_on(call, ":error=" + error)));
    }
  }
  return runs.Print("failure");
}

/// No file may grow beyond some size: a write is cut short there, and the next one fails.
int limit_file_size(const Job& job) {
  constexpr rlim_t kStep = 512;
  constexpr rlim_t kMost = 16384;  // more than a tool has
  Runs runs(job);
  for (rlim_t size = 0; size <= kMost; size += kStep) {
    job.Prepare();
    runs.Look(ended(start([&] {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit limit{size + kStep / 2, RLIM_INFINITY};
      if (setrlimit(RLIMIT_FSIZE, &limit) != 0) throw std::runtime_error("cannot set the limit");
      std::freopen("/dev/null", "w", stderr);  // the failures are wanted
      act(job);
    })));
  }
  return runs.Print("full");
}

/// The verbs on one operation; -1 when the arguments are none of theirs.
int disturb(std::string_view verb, int argc, char** argv) {
  const Operation* const operation = torture::find_operation(argv[2]);
  if (operation == nullptr) return -1;
  const fs::path folder = fs::absolute(argv[3]);
  if (verb == "kill" && argc == 5) {
    return kill_at_random({*operation, folder, kTools}, std::atoi(argv[4]));
  }
  const Job few{*operation, folder, argc == 5 ? std::atoi(argv[4]) : kFewTools};
  if (verb == "syscalls" && argc <= 5) return kill_at_every_call(few);
  if (verb == "failures" && argc <= 5) return fail_every_call(few);
  if (verb == "full" && argc == 4) return limit_file_size(few);
  if (argc < 5) return -1;
  const Job part{*operation, folder, argc == 6 ? std::atoi(argv[5]) : kTools, argv[4]};
  if (verb == "verify") return verify(part) ? 0 : 1;
  if (verb != "prepare" && verb != "act") return -1;
  verb == "act" ? act(part) : part.Prepare();
  return 0;
}

}  // namespace

int main(int argc, char** argv) try {
  const std::string_view verb = argc > 1 ? argv[1] : "";
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
  const int result = argc > 3 ? disturb(verb, argc, argv) : -1;
  if (result >= 0) return result;
  std::fputs(kUsage, stderr);
  return 2;
} catch (const std::exception& error) {
  std::fprintf(stderr, "torture: %s\n", error.what());
  return 1;
}

#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// @file
/// A small harness: each figure is the ratio of our time to that of a floor measured beside it in
/// the same run, round by round, so that a slow or busy machine changes both alike.

namespace bench {

/// One line of the table.
struct Figure {
  std::string operation;  ///< what was done / its floor
  std::string size;       ///< on how much
  double ours = 0;        ///< median, in `unit`
  double floor = 0;       ///< median, in `unit`
  double ratio = 0;       ///< median of the rounds' ratios
  double goal = 0;        ///< largest ratio wanted
  std::string unit = "ms";
};

/// What a benchmark may ask of the run.
struct Options {
  bool quick = false;             ///< small sizes and few rounds
  std::string only;               ///< run only the groups whose name holds this; empty: all
  std::filesystem::path scratch;  ///< folder on the disk that is measured
  std::filesystem::path program;  ///< the tooldb program; empty: its figures are left out
  int rounds = 5;
};

/// One group of figures; registered in bench_main.cpp.
using Benchmark = std::vector<Figure> (*)(const Options&);

/// A piece of work: runs once, and answers the seconds that count (set-up left out).
using Work = std::function<double()>;

/// Seconds that pass while `work` runs: for work that waits for the disk or runs on many threads.
template <class F>
double seconds(F&& work) {
  const auto start = std::chrono::steady_clock::now();
  std::forward<F>(work)();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Processor time of this process so far, in seconds; that spent in the system counts too.
double processor_time();

/// Seconds of processor time that `work` takes: a busy machine does not change them much.
template <class F>
double cpu_seconds(F&& work) {
  const double start = processor_time();
  std::forward<F>(work)();
  return processor_time() - start;
}

double median(std::vector<double> values);

/// Runs ours and the floor in turn, once unmeasured and then `rounds` times.
Figure compare(Figure figure, int rounds, const Work& ours, const Work& floor);

/// Keeps the compiler from removing work whose result nobody reads.
template <class T>
void keep(const T& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

/// A folder of its own below the scratch folder, removed at the end.
class ScratchFolder {
 public:
  explicit ScratchFolder(const Options& options);
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder();
  const std::filesystem::path& Path() const { return path_; }
  std::string Text() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

/// Bytes in memory that nothing has written to before they were read.
struct FileBytes {
  std::unique_ptr<char[]> data;
  std::size_t size = 0;
};

/// Reads a file whole into fresh memory.
FileBytes read_file(const std::filesystem::path& path);
void write_file(const std::filesystem::path& path, const std::string& bytes);

/// Bytes that the process has allocated and not given back.
std::size_t allocated_bytes();

}  // namespace bench

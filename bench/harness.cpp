#include "bench/harness.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <ctime>
#include <stdexcept>

namespace bench {

double median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

Figure compare(Figure figure, int rounds, const Work& ours, const Work& floor) {
  std::vector<double> our_times;
  std::vector<double> floor_times;
  std::vector<double> ratios;
  for (int round = 0; round <= rounds; ++round) {
    const double floor_time = floor();
    const double our_time = ours();
    if (round == 0) continue;  // warms caches and the allocator
    our_times.push_back(our_time * 1e3);
    floor_times.push_back(floor_time * 1e3);
    ratios.push_back(our_time / floor_time);
  }
  figure.ours = median(our_times);
  figure.floor = median(floor_times);
  figure.ratio = median(ratios);
  return figure;
}

ScratchFolder::ScratchFolder(const Options& options) {
  static std::atomic<int> count = 0;
  path_ = options.scratch /
          ("tooldb-bench-" + std::to_string(getpid()) + "-" + std::to_string(count++));
  std::filesystem::create_directories(path_);
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

double processor_time() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

FileBytes read_file(const std::filesystem::path& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (file < 0 || fstat(file, &status) != 0) {
    throw std::runtime_error("cannot open " + path.string());
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  FileBytes bytes{std::unique_ptr<char[]>(new char[size])};
  while (bytes.size < size) {
    const auto got = read(file, bytes.data.get() + bytes.size, size - bytes.size);
    if (got <= 0) throw std::runtime_error("cannot read " + path.string());
    bytes.size += static_cast<std::size_t>(got);
  }
  close(file);
  return bytes;
}

void write_file(const std::filesystem::path& path, const std::string& bytes) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (file < 0) throw std::runtime_error("cannot write " + path.string());
  std::size_t done = 0;
  while (done < bytes.size()) {
    const auto put = write(file, bytes.data() + done, bytes.size() - done);
    if (put <= 0) throw std::runtime_error("cannot write " + path.string());
    done += static_cast<std::size_t>(put);
  }
  close(file);
}

std::size_t allocated_bytes() {
  const auto info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace bench

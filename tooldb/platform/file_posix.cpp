#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "tooldb/platform/system_error.h"
#include "tooldb/platform/system_file_system.h"

namespace tooldb {

namespace {

/// The answer of a system call, made again while a signal interrupts it.
template <class Call>
auto uninterrupted(Call&& call) {
  auto answer = call();
  while (answer == -1 && errno == EINTR) answer = call();
  return answer;
}

[[noreturn]] void raise_last_error(const std::string& path) {
  raise_system_error(path, last_system_error());
}

constexpr mode_t kReadAndWriteAsUmaskAllows = 0666;
constexpr mode_t kOwnerMayOnlyWrite = 0200;

int open_file(const std::string& path, int flags, mode_t mode = kReadAndWriteAsUmaskAllows) {
  return uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); });
}

/// An open descriptor, closed when it goes.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  void Own(int number) { number_ = number; }
  int Number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }
  /// False when the system reports a failure. A descriptor is gone whatever close() answers, so
  /// that an interrupted one is not closed again.
  bool Close() {
    const int number = std::exchange(number_, -1);
    return number < 0 || ::close(number) == 0 || errno == EINTR;
  }

 private:
  int number_ = -1;
};

class PosixFile final : public NewFile {
 public:
  explicit PosixFile(const std::string& path) : path_(path) {}

  /// False, with the reason in errno, when it cannot be created.
  bool OpenNew() {
    descriptor_.Own(open_file(path_, O_WRONLY | O_CREAT | O_EXCL));
    return descriptor_.IsOpen();
  }

  void Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t count =
          uninterrupted([&] { return ::write(descriptor_.Number(), bytes.data(), bytes.size()); });
      if (count < 0) raise_last_error(path_);
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
  }

  void Flush() override {
    if (uninterrupted([&] { return ::fsync(descriptor_.Number()); }) != 0) raise_last_error(path_);
  }

  void Close() override {
    if (!descriptor_.Close()) raise_last_error(path_);
  }

 private:
  Descriptor descriptor_;
  std::string path_;
};

class PosixInputFile final : public InputFile {
 public:
  explicit PosixInputFile(const std::string& path) : descriptor_(OpenRegular(path)), path_(path) {
    struct stat status = {};
    if (::fstat(descriptor_.Number(), &status) != 0) raise_last_error(path);
    if (!S_ISREG(status.st_mode)) throw FileError(path, "not a regular file");
    size_ = static_cast<std::uint64_t>(status.st_size);
  }

  std::uint64_t Size() const override { return size_; }

  std::size_t Read(std::uint64_t offset, char* bytes, std::size_t size) override {
    std::size_t done = 0;
    while (done < size) {
      const ssize_t count = uninterrupted([&] {
        return ::pread(descriptor_.Number(), bytes + done, size - done,
                       static_cast<off_t>(offset + done));
      });
      if (count < 0) raise_last_error(path_);
      if (count == 0) break;
      done += static_cast<std::size_t>(count);
    }
    return done;
  }

 private:
  static int OpenRegular(const std::string& path) {
    // Without O_NONBLOCK the opening of a named pipe would wait for its writer.
    const int number = open_file(path, O_RDONLY | O_NONBLOCK);
    if (number < 0) raise_last_error(path);
    return number;
  }

  Descriptor descriptor_;
  std::string path_;
  std::uint64_t size_ = 0;
};

/// File systems that cannot flush a folder say so with one of these.
bool is_flush_unsupported(int error) { return error == EINVAL || error == ENOTSUP; }

}  // namespace

std::string SystemFileSystem::Read(const std::string& path) {
  PosixInputFile file(path);
  // One byte more than the file has, so that its end shows without another read.
  std::string text(static_cast<std::size_t>(file.Size()) + 1, '\0');
  std::size_t size = file.Read(0, text.data(), text.size());
  while (size == text.size()) {
    text.resize(2 * size);
    size += file.Read(size, text.data() + size, text.size() - size);
  }
  text.resize(size);
  return text;
}

std::unique_ptr<InputFile> SystemFileSystem::Open(const std::string& path) {
  return std::make_unique<PosixInputFile>(path);
}

std::unique_ptr<NewFile> SystemFileSystem::CreateNew(const std::string& path) {
  // Made before it is opened: without memory for it there would be a file that nobody closes.
  auto file = std::make_unique<PosixFile>(path);
  if (file->OpenNew()) return file;
  if (errno != EEXIST) raise_last_error(path);
  return nullptr;
}

bool SystemFileSystem::CreateProbe(const std::string& path) {
  const Descriptor probe(open_file(path, O_WRONLY | O_CREAT | O_EXCL, kOwnerMayOnlyWrite));
  if (!probe.IsOpen() && errno != EEXIST) raise_last_error(path);
  return probe.IsOpen();
}

bool SystemFileSystem::IsProbe(const std::string& path) {
  struct stat status = {};
  return ::lstat(path.c_str(), &status) == 0 && status.st_size == 0 &&
         status.st_mode == (S_IFREG | kOwnerMayOnlyWrite);
}

void SystemFileSystem::Rename(const std::string& from, const std::string& to) {
  if (::rename(from.c_str(), to.c_str()) != 0) raise_last_error(from);
}

void SystemFileSystem::FlushFolder(const std::string& path) {
  const Descriptor folder(open_file(path, O_RDONLY | O_DIRECTORY));
  if (!folder.IsOpen()) raise_last_error(path);
  if (uninterrupted([&] { return ::fsync(folder.Number()); }) != 0 &&
      !is_flush_unsupported(errno)) {
    raise_last_error(path);
  }
}

#ifdef __linux__
bool SystemFileSystem::CanFlushDisk() { return true; }

void SystemFileSystem::FlushDisk(const std::string& folder) {
  const Descriptor descriptor(open_file(folder, O_RDONLY | O_DIRECTORY));
  if (!descriptor.IsOpen() || ::syncfs(descriptor.Number()) != 0) raise_last_error(folder);
}
#else
bool SystemFileSystem::CanFlushDisk() { return FileSystem::CanFlushDisk(); }
void SystemFileSystem::FlushDisk(const std::string& folder) { FileSystem::FlushDisk(folder); }
#endif

std::int64_t SystemFileSystem::LastWriteNanoseconds(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0) raise_last_error(path);
  return std::int64_t{status.st_mtim.tv_sec} * 1'000'000'000 + status.st_mtim.tv_nsec;
}

}  // namespace tooldb

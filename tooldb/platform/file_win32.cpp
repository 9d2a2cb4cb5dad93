#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "tooldb/platform/file_name.h"
#include "tooldb/platform/system_error.h"
#include "tooldb/platform/system_file_system.h"

namespace tooldb {

namespace {

[[noreturn]] void raise_last_error(const std::string& path) {
  raise_system_error(path, last_system_error());
}

/// One call reads or writes at most so much.
constexpr std::size_t kLargestTransfer = std::size_t{1} << 30;

DWORD transfer_size(std::size_t wanted) {
  return static_cast<DWORD>(std::min(wanted, kLargestTransfer));
}

/// An open file, closed when it goes.
class FileHandle {
 public:
  FileHandle() = default;
  explicit FileHandle(HANDLE handle) : handle_(handle) {}
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;
  ~FileHandle() { Close(); }

  void Own(HANDLE handle) { handle_ = handle; }
  HANDLE Get() const { return handle_; }
  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  bool Close() {
    const HANDLE handle = std::exchange(handle_, INVALID_HANDLE_VALUE);
    return handle == INVALID_HANDLE_VALUE || CloseHandle(handle) != 0;
  }

 private:
  HANDLE handle_ = INVALID_HANDLE_VALUE;
};

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// When a probe was written, by which it is known: the year 2000 was 0.1234567 s old.
constexpr FILETIME kProbeTime = {0x25801687, 0x01BF53EB};

HANDLE open_file(const std::string& path, DWORD access, DWORD share, DWORD disposition,
                 DWORD attributes = FILE_ATTRIBUTE_NORMAL) {
  require_plain_path(path);
  return CreateFileA(path.c_str(), access, share, nullptr, disposition, attributes, nullptr);
}

class Win32File final : public NewFile {
 public:
  explicit Win32File(const std::string& path) : path_(path) {}

  /// False, with the reason in GetLastError, when it cannot be created.
  bool OpenNew() {
    handle_.Own(open_file(path_, GENERIC_WRITE, 0, CREATE_NEW));
    return handle_.IsOpen();
  }

  void Write(std::string_view bytes) override {
    while (!bytes.empty()) {
      DWORD count = 0;
      if (!WriteFile(handle_.Get(), bytes.data(), transfer_size(bytes.size()), &count, nullptr)) {
        raise_last_error(path_);
      }
      bytes.remove_prefix(count);
    }
  }

  void Flush() override {
    if (!FlushFileBuffers(handle_.Get())) raise_last_error(path_);
  }

  void Close() override {
    if (!handle_.Close()) raise_last_error(path_);
  }

 private:
  FileHandle handle_;
  std::string path_;
};

class Win32InputFile final : public InputFile {
 public:
  explicit Win32InputFile(const std::string& path) : handle_(OpenShared(path)), path_(path) {
    LARGE_INTEGER size = {};
    if (!handle_.IsOpen() || !GetFileSizeEx(handle_.Get(), &size)) raise_last_error(path);
    size_ = static_cast<std::uint64_t>(size.QuadPart);
  }

  std::uint64_t Size() const override { return size_; }

  std::size_t Read(std::uint64_t offset, char* bytes, std::size_t size) override {
    LARGE_INTEGER place = {};
    place.QuadPart = static_cast<LONGLONG>(offset);
    if (!SetFilePointerEx(handle_.Get(), place, nullptr, FILE_BEGIN)) raise_last_error(path_);
    std::size_t done = 0;
    while (done < size) {
      DWORD count = 0;
      if (!ReadFile(handle_.Get(), bytes + done, transfer_size(size - done), &count, nullptr)) {
        raise_last_error(path_);
      }
      if (count == 0) break;
      done += count;
    }
    return done;
  }

 private:
  static HANDLE OpenShared(const std::string& path) {
    return open_file(path, GENERIC_READ, kShareAll, OPEN_EXISTING);
  }

  FileHandle handle_;
  std::string path_;
  std::uint64_t size_ = 0;
};

[[noreturn]] void raise_code(const std::string& path, DWORD code) {
  raise_system_error(path, {static_cast<int>(code), boost::system::system_category()});
}

/// True for a file with all of these attributes.
bool is_file_with(const std::string& path, DWORD attributes) {
  const DWORD found = GetFileAttributesA(path.c_str());
  return found != INVALID_FILE_ATTRIBUTES && (found & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
         (found & attributes) == attributes;
}

/// Of a target that is open elsewhere the system says only that it denies the access.
void raise_if_held(const std::string& path) {
  if (!is_file_with(path, 0)) return;
  const FileHandle file(open_file(path, DELETE, kShareAll, OPEN_EXISTING));
  if (file.IsOpen() || GetLastError() == ERROR_SHARING_VIOLATION) {
    raise_code(path, ERROR_SHARING_VIOLATION);
  }
}

/// FAT leaves the time of a folder as it is when files come and go.
bool keeps_folder_times(const FileHandle& file) {
  std::array<wchar_t, MAX_PATH + 1> system = {};
  return GetVolumeInformationByHandleW(file.Get(), nullptr, 0, nullptr, nullptr, nullptr,
                                       system.data(), static_cast<DWORD>(system.size())) != 0 &&
         std::wstring_view(system.data()).find(L"FAT") == std::wstring_view::npos;
}

/// In nanoseconds since 1970; a time that is centuries off wraps around.
std::int64_t unix_time(const FILETIME& time) {
  constexpr std::uint64_t kTicksBefore1970 = 116'444'736'000'000'000;  // since 1601, of 100 ns
  const std::uint64_t ticks = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
  return static_cast<std::int64_t>((ticks - kTicksBefore1970) * 100);
}

}  // namespace

std::string SystemFileSystem::Read(const std::string& path) {
  Win32InputFile file(path);
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
  return std::make_unique<Win32InputFile>(path);
}

std::unique_ptr<NewFile> SystemFileSystem::CreateNew(const std::string& path) {
  // Made before it is opened: without memory for it there would be a file that nobody closes.
  auto file = std::make_unique<Win32File>(path);
  if (file->OpenNew()) return file;
  if (GetLastError() != ERROR_FILE_EXISTS) raise_last_error(path);
  return nullptr;
}

bool SystemFileSystem::CreateProbe(const std::string& path) {
  const FileHandle probe(open_file(path, GENERIC_WRITE, 0, CREATE_NEW));
  if (!probe.IsOpen() && GetLastError() != ERROR_FILE_EXISTS) raise_last_error(path);
  // Where that fails the probe of a killed process stays, an empty file.
  SetFileTime(probe.Get(), nullptr, nullptr, &kProbeTime);
  return probe.IsOpen();
}

bool SystemFileSystem::IsProbe(const std::string& path) {
  WIN32_FILE_ATTRIBUTE_DATA found = {};
  return GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &found) != 0 &&
         (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 && found.nFileSizeHigh == 0 &&
         found.nFileSizeLow == 0 && CompareFileTime(&found.ftLastWriteTime, &kProbeTime) == 0;
}

void SystemFileSystem::Rename(const std::string& from, const std::string& to) {
  require_plain_path(from);
  require_plain_path(to);
  // Not every server and emulator refuses to replace such a file.
  if (is_file_with(to, FILE_ATTRIBUTE_READONLY)) raise_code(to, ERROR_ACCESS_DENIED);
  if (MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    return;
  }
  const DWORD failure = GetLastError();
  if (failure == ERROR_ACCESS_DENIED) raise_if_held(to);
  raise_code(from, failure);
}

// Folders cannot be flushed here; the moves above are written through.
void SystemFileSystem::FlushFolder(const std::string&) {}

bool SystemFileSystem::CanFlushDisk() { return FileSystem::CanFlushDisk(); }
void SystemFileSystem::FlushDisk(const std::string& folder) { FileSystem::FlushDisk(folder); }

std::int64_t SystemFileSystem::LastWriteNanoseconds(const std::string& path) {
  const FileHandle file(
      open_file(path, FILE_READ_ATTRIBUTES, kShareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS));
  FILETIME written = {};
  if (!file.IsOpen() || !GetFileTime(file.Get(), nullptr, nullptr, &written)) {
    raise_last_error(path);
  }
  if (!keeps_folder_times(file)) throw FileError(path, "the disk keeps no times of folders");
  return unix_time(written);
}

}  // namespace tooldb

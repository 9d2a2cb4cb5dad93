#include "tooldb/platform/safe_write.h"

#include <atomic>
#include <boost/filesystem/path.hpp>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

#include "tooldb/platform/file_system.h"
#include "tooldb/platform/process.h"

namespace tooldb {

namespace {

// A temporary file is named .tdb-<machine>-<process>-<number>.tmp, with decimal numbers: at most
// 41 bytes, however long the target's name is.
constexpr std::string_view kTemporaryPrefix = ".tdb-";
constexpr std::string_view kTemporarySuffix = ".tmp";
constexpr std::int64_t kOldestTemporarySeconds = 600;

struct TemporaryName {
  std::uint32_t machine = 0;
  std::uint32_t process = 0;
  std::uint32_t number = 0;
};

/// FNV-1a of the machine's name: a process number means something on its own machine only.
std::uint32_t machine_number() {
  std::uint32_t hash = 2166136261U;
  for (const char c : host_name()) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  return hash;
}

std::string text_of(const TemporaryName& name) {
  return std::string(kTemporaryPrefix) + std::to_string(name.machine) + '-' +
         std::to_string(name.process) + '-' + std::to_string(name.number) +
         std::string(kTemporarySuffix);
}

/// Takes a number and the mark behind it off the front of `text`.
std::optional<std::uint32_t> take_number(std::string_view& text, std::string_view mark) {
  std::uint32_t value = 0;
  const char* const last = text.data() + text.size();
  const auto [end, failure] = std::from_chars(text.data(), last, value);
  if (failure != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  if (!text.starts_with(mark)) return std::nullopt;
  text.remove_prefix(mark.size());
  return value;
}

std::optional<TemporaryName> parsed_temporary_name(std::string_view text) {
  if (!text.starts_with(kTemporaryPrefix)) return std::nullopt;
  text.remove_prefix(kTemporaryPrefix.size());
  const auto machine = take_number(text, "-");
  const auto process = machine ? take_number(text, "-") : std::nullopt;
  const auto number = process ? take_number(text, kTemporarySuffix) : std::nullopt;
  if (!number || !text.empty()) return std::nullopt;
  return TemporaryName{*machine, *process, *number};
}

/// A file in `folder` that is removed unless it has been moved away.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& folder) {
    static std::atomic<std::uint32_t> next_number = 0;
    const std::uint32_t machine = machine_number();
    do {
      path_ = folder + '/' + text_of({machine, process_id(), next_number++});
      file_ = file_system().CreateNew(path_);
    } while (file_ == nullptr);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (moved_) return;
    file_.reset();
    try {
      file_system().Remove(path_);
    } catch (...) {  // NOLINT(bugprone-empty-catch): the next sweep removes it
    }
  }

  void Fill(std::string_view text) {
    file_->Write(text);
    file_->Flush();
    file_->Close();
  }

  /// The disk has to be flushed before the file is moved.
  void FillUnflushed(std::string_view text) {
    file_->Write(text);
    file_->Close();
  }

  void MoveTo(const std::string& target) {
    file_system().Rename(path_, target);
    moved_ = true;
  }

 private:
  std::string path_;
  std::unique_ptr<NewFile> file_;
  bool moved_ = false;
};

/// Runs a body that writes the stand-in of a file. People know the file that they wanted to write.
template <class Body>
void named_after(const std::string& path, Body&& body) {
  try {
    body();
  } catch (const FileError& error) {
    throw FileError(path, error.reason);
  }
}

bool is_left_over(const std::string& folder, const std::string& name) {
  // A process that is still at work does not miss its probe: it is made only to be removed.
  if (name.find('.') == std::string::npos) return file_system().IsProbe(folder + '/' + name);
  const auto parsed = parsed_temporary_name(name);
  if (!parsed) return false;
  if (parsed->machine == machine_number() && !is_process_running(parsed->process)) return true;
  const std::int64_t written = file_system().LastWriteTime(folder + '/' + name);
  return current_time() - written > kOldestTemporarySeconds;
}

}  // namespace

void replace_file(const std::string& path, std::string_view text) {
  named_after(path, [&] {
    TemporaryFile file(folder_of(path));
    file.Fill(text);
    file.MoveTo(path);
  });
}

struct PreparedFiles::Prepared {
  Prepared(const std::string& folder, std::string its_text)
      : text(std::move(its_text)), file(folder) {
    file.FillUnflushed(text);
  }

  std::string text;
  TemporaryFile file;
};

PreparedFiles::PreparedFiles() = default;
PreparedFiles::~PreparedFiles() = default;

void PreparedFiles::Write(const std::string& path, std::string text) {
  named_after(
      path, [&] { by_path_[path] = std::make_unique<Prepared>(folder_of(path), std::move(text)); });
}

bool PreparedFiles::Place(const std::string& path, std::string_view text) {
  const auto entry = by_path_.extract(path);
  if (entry.empty() || entry.mapped() == nullptr || entry.mapped()->text != text) return false;
  named_after(path, [&] { entry.mapped()->file.MoveTo(path); });
  return true;
}

std::string folder_of(const std::string& path) {
  const std::string folder = boost::filesystem::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

bool is_temporary_file_name(std::string_view name) {
  return parsed_temporary_name(name).has_value();
}

void sweep_temporary_files(const std::string& folder) noexcept {
  const auto attempt = [](auto&& action) {
    try {
      action();
    } catch (...) {  // NOLINT(bugprone-empty-catch): a file that stays does no harm
    }
  };
  attempt([&] {
    for (const std::string& name : file_system().List(folder)) {
      attempt([&] {
        if (is_left_over(folder, name)) file_system().Remove(folder + '/' + name);
      });
    }
  });
}

}  // namespace tooldb

#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <string>

namespace tooldb {

/// A new folder for one test, removed with all in it.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("tooldb-test-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  std::string Path(const std::string& name = "") const {
    return (name.empty() ? path_ : path_ / name).generic_string();
  }

  std::string MakeFolder(const std::string& name) const {
    std::filesystem::create_directories(path_ / name);
    return Path(name);
  }

  std::string MakeFile(const std::string& name, const std::string& text) const {
    std::ofstream(Path(name), std::ios::binary) << text;
    return Path(name);
  }

  /// Every file at or below the folder, by its path in it, with its bytes.
  std::map<std::string, std::string> Files(const std::string& below = "") const {
    std::map<std::string, std::string> files;
    std::error_code none;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Path(below), none)) {
      if (!entry.is_regular_file()) continue;
      std::ostringstream bytes;
      bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
      files[std::filesystem::relative(entry.path(), Path(below)).generic_string()] = bytes.str();
    }
    return files;
  }

 private:
  std::filesystem::path path_;
};

}  // namespace tooldb

#pragma once

#include <optional>
#include <string>

namespace tooldb {

/// A library loaded while the program runs, and never unloaded: what it handed out stays valid.
class DynamicLibrary {
 public:
  /// Nothing when there is no such file or it is no library.
  static std::optional<DynamicLibrary> Load(const std::string& path);

  /// The entry point of that name; null when the library has none. `Function` is the type of a
  /// pointer to a function, and must be the one that the entry point has.
  template <class Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(Address(name));
  }

 private:
  using AnyFunction = void (*)();

  explicit DynamicLibrary(void* handle) : handle_(handle) {}
  AnyFunction Address(const char* name) const;

  void* handle_;
};

}  // namespace tooldb

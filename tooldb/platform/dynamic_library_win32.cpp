#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "tooldb/platform/dynamic_library.h"

namespace tooldb {

std::optional<DynamicLibrary> DynamicLibrary::Load(const std::string& path) {
  void* const handle = LoadLibraryA(path.c_str());
  if (handle == nullptr) return std::nullopt;
  return DynamicLibrary(handle);
}

DynamicLibrary::AnyFunction DynamicLibrary::Address(const char* name) const {
  return reinterpret_cast<AnyFunction>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

}  // namespace tooldb

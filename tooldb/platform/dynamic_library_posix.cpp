#include <dlfcn.h>

#include "tooldb/platform/dynamic_library.h"

namespace tooldb {

std::optional<DynamicLibrary> DynamicLibrary::Load(const std::string& path) {
  void* const handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) return std::nullopt;
  return DynamicLibrary(handle);
}

DynamicLibrary::AnyFunction DynamicLibrary::Address(const char* name) const {
  return reinterpret_cast<AnyFunction>(::dlsym(handle_, name));
}

}  // namespace tooldb

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <array>

#include "tooldb/platform/process.h"
#include "tooldb/platform/system_error.h"

namespace tooldb {

std::string executable_path() {
  std::array<char, MAX_PATH> path = {};
  const DWORD size = GetModuleFileNameA(nullptr, path.data(), MAX_PATH);
  if (size == 0) raise_system_error("path of the program", last_system_error());
  if (size == MAX_PATH) throw FileError("path of the program", "longer than 259 characters");
  return {path.data(), size};
}

std::uint32_t process_id() { return GetCurrentProcessId(); }

bool is_process_running(std::uint32_t id) {
  const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, id);
  if (process == nullptr) return GetLastError() == ERROR_ACCESS_DENIED;
  const bool running = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
  CloseHandle(process);
  return running;
}

std::string host_name() {
  std::array<char, MAX_COMPUTERNAME_LENGTH + 1> name = {};
  DWORD size = static_cast<DWORD>(name.size());
  if (!GetComputerNameA(name.data(), &size)) return {};
  return {name.data(), size};
}

}  // namespace tooldb

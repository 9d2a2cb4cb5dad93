#include <signal.h>
#include <unistd.h>

#include <array>
#include <boost/filesystem/operations.hpp>
#include <cerrno>

#include "tooldb/platform/process.h"
#include "tooldb/platform/system_error.h"

namespace tooldb {

std::string executable_path() {
  const char* const link = "/proc/self/exe";
  boost::system::error_code failure;
  const boost::filesystem::path path = boost::filesystem::read_symlink(link, failure);
  if (failure) raise_system_error(link, failure);
  return path.string();
}

std::uint32_t process_id() { return static_cast<std::uint32_t>(::getpid()); }

bool is_process_running(std::uint32_t id) {
  return ::kill(static_cast<pid_t>(id), 0) == 0 || errno == EPERM;
}

std::string host_name() {
  std::array<char, 256> name = {};
  if (::gethostname(name.data(), name.size() - 1) != 0) return {};
  return name.data();
}

}  // namespace tooldb

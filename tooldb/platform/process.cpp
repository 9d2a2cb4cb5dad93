#include "tooldb/platform/process.h"

#include <boost/filesystem/operations.hpp>
#include <chrono>

#include "tooldb/platform/system_error.h"

namespace tooldb {

void set_current_folder(const std::string& folder) {
  boost::system::error_code failure;
  boost::filesystem::current_path(folder, failure);
  if (failure) raise_system_error(folder, failure);
}

std::int64_t current_time() {
  return std::chrono::duration_cast<std::chrono::seconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

}  // namespace tooldb

#include <cerrno>

#include "tooldb/platform/system_error.h"

namespace tooldb {

std::string reason_text(const std::string&, const boost::system::error_code& reason) {
  return reason.message();
}

boost::system::error_code last_system_error() { return {errno, boost::system::generic_category()}; }

}  // namespace tooldb

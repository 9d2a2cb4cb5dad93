#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "apps/bodies.h"

namespace tooldb {

/// A form in which outlines are written.
struct ProfileFormat {
  std::string_view name;
  std::string (*text)(const std::vector<Body>& bodies);
};

/// Null when there is none of that name.
const ProfileFormat* find_profile_format(std::string_view name);

}  // namespace tooldb

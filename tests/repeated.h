#pragma once

#include <string>
#include <string_view>

namespace tooldb {

/// A text many times over.
inline std::string repeated(std::string_view text, int count) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

}  // namespace tooldb

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tooldb/util.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string code(reinterpret_cast<const char*>(data), size);
  const std::string file = tdbUtil::encoding_code(code);
  if (!tdbUtil::is_valid_windows_string(file)) std::abort();
  if (code.find("{{") == std::string::npos && code.find("{") == std::string::npos &&
      tdbUtil::decoding_code(file) != code) {
    std::abort();
  }
  tdbUtil::decoding_code(code);
  return 0;
}

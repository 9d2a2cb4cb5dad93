#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

/// @file
/// Expected documents, one file each in tests/data/golden/.

namespace tooldb {

/// True when `text` is, byte for byte, the golden document `name`. Under `script/test
/// --renew-golden` the document is written instead, and the answer is true.
inline testing::AssertionResult matches_golden(const std::string& text, const std::string& name) {
  const auto path = std::filesystem::path(TOOLDB_TEST_DATA) / "golden" / name;
  if (std::getenv("TOOLDB_RENEW_GOLDEN") != nullptr) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return testing::AssertionSuccess();
  }
  std::ifstream file(path, std::ios::binary);
  std::ostringstream expected;
  expected << file.rdbuf();
  if (file && expected.str() == text) return testing::AssertionSuccess();
  return testing::AssertionFailure()
         << (file ? "differs from " : "there is no ") << path << "\nexpected:\n"
         << expected.str() << "\nactual:\n"
         << text;
}

}  // namespace tooldb

#include "filters/zip_archive.h"

#include <gmock/gmock.h>

#include "tests/filters/import_reports.h"

namespace tooldb {
namespace {

/// "hello" stored as a.txt.
std::string stored_archive() {
  using namespace std::string_literals;
  const std::string fields = "\x0a\0\0\0\0\0\0\0\0\0\x86\xa6\x10\x36\x05\0\0\0\x05\0\0\0\x05\0"s;
  return "PK\x03\x04"s + fields + "\0\0"s + "a.txt" + "hello" + "PK\x01\x02\x0a\0"s + fields +
         "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0"s + "a.txt" + "PK\x05\x06\0\0\0\0\x01\0\x01\0"s +
         "\x33\0\0\0\x28\0\0\0\0\0"s;
}

TEST(ZipArchive, UnpacksStoredMembers) {
  std::string problem;
  EXPECT_EQ(unzip_member(stored_archive(), "a.txt", problem), "hello") << problem;
  EXPECT_FALSE(unzip_member(stored_archive(), "b.txt", problem));
  EXPECT_THAT(problem, testing::HasSubstr("b.txt"));
}

TEST(ZipArchive, SurvivesEveryCutAndEveryChangedByte) {
  const std::string archive = sample_source("fusion/ollema.tools");
  std::string problem;
  const auto whole = unzip_member(archive, "tools.json", problem);
  ASSERT_TRUE(whole) << problem;
  for (std::size_t i = 0; i < archive.size(); ++i) {
    problem.clear();
    EXPECT_FALSE(unzip_member(std::string_view(archive).substr(0, i), "tools.json", problem)) << i;
    EXPECT_FALSE(problem.empty());
    std::string damaged = archive;
    damaged[i] = static_cast<char>(~damaged[i]);
    const auto read = unzip_member(damaged, "tools.json", problem);
    EXPECT_TRUE(!read || *read == *whole) << i;
  }
}

}  // namespace
}  // namespace tooldb

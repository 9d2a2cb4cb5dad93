#include <gtest/gtest.h>

#include <string>

#include "tests/geom/row_name.h"
#include "tests/storage/faulty_file_system.h"
#include "tests/storage/scratch_folder.h"
#include "tooldb/platform/file_system.h"

namespace tooldb {
namespace {

struct PartCase {
  const char* name;
  std::uint64_t offset;
  std::size_t size;
  std::string_view bytes;
};
constexpr PartCase kParts[] = {
    {"Whole", 0, 10, "0123456789"}, {"Beginning", 0, 3, "012"}, {"Middle", 4, 2, "45"},
    {"AcrossTheEnd", 8, 5, "89"},   {"AtTheEnd", 10, 5, ""},    {"BeyondTheEnd", 1000, 5, ""},
    {"Nothing", 3, 0, ""},
};

std::string read(InputFile& file, const PartCase& part) {
  std::string bytes(part.size, '?');
  bytes.resize(file.Read(part.offset, bytes.data(), bytes.size()));
  return bytes;
}

class InputFileParts : public testing::TestWithParam<PartCase> {};
TEST_P(InputFileParts, AreReadFromTheDiskAndFromMemory) {
  const ScratchFolder scratch;
  const std::string path = scratch.MakeFile("digits", "0123456789");
  const auto on_disk = file_system().Open(path);
  EXPECT_EQ(on_disk->Size(), 10U);
  EXPECT_EQ(read(*on_disk, GetParam()), GetParam().bytes);
  FaultyFileSystem disk;
  const auto in_memory = disk.Open(path);
  EXPECT_EQ(in_memory->Size(), 10U);
  EXPECT_EQ(read(*in_memory, GetParam()), GetParam().bytes);
}
INSTANTIATE_TEST_SUITE_P(Parts, InputFileParts, testing::ValuesIn(kParts), row_name<PartCase>);

TEST(InputFileOpening, RaisesWithThePath) {
  const ScratchFolder scratch;
  for (const std::string& path : {scratch.Path("none"), scratch.MakeFolder("folder")}) {
    try {
      file_system().Open(path);
      ADD_FAILURE() << path;
    } catch (const FileError& error) {
      EXPECT_NE(error.message.find(path), std::string::npos);
    }
  }
}

}  // namespace
}  // namespace tooldb

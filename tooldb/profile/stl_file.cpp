#include "tooldb/profile/stl_file.h"

#include <memory>
#include <string_view>

#include "geom/stl.h"
#include "tooldb/error.h"
#include "tooldb/platform/file_system.h"

namespace tooldb {

namespace {

class FileBytes final : public ByteSource {
 public:
  explicit FileBytes(const std::string& path) : file_(file_system().Open(path)) {}

  std::uint64_t Size() const override { return file_->Size(); }
  std::string_view Part(std::uint64_t offset, std::size_t size) override {
    if (buffer_.size() < size) buffer_.resize(size);
    return {buffer_.data(), file_->Read(offset, buffer_.data(), size)};
  }

 private:
  std::unique_ptr<InputFile> file_;
  std::vector<char> buffer_;
};

}  // namespace

std::vector<Facet> read_stl_file(const std::string& path) {
  FileBytes source(path);
  std::string error;
  auto mesh = read_stl(source, error);
  if (!mesh) throw tdbError(1, path + ": " + error);
  return *std::move(mesh);
}

}  // namespace tooldb

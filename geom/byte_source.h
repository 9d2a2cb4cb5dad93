#pragma once

#include <cstdint>
#include <string_view>

namespace tooldb {

/// Bytes that are read a part at a time, so that a large file need not be in memory as a whole.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  virtual std::uint64_t Size() const = 0;
  /// Up to `size` bytes from `offset` on, fewer only at the end. Valid until the next call.
  virtual std::string_view Part(std::uint64_t offset, std::size_t size) = 0;
};

/// Bytes that are in memory anyway; borrowed.
class MemoryBytes : public ByteSource {
 public:
  explicit MemoryBytes(std::string_view bytes) : bytes_(bytes) {}

  std::uint64_t Size() const override { return bytes_.size(); }
  std::string_view Part(std::uint64_t offset, std::size_t size) override {
    return offset < bytes_.size() ? bytes_.substr(static_cast<std::size_t>(offset), size)
                                  : std::string_view();
  }

 private:
  std::string_view bytes_;
};

}  // namespace tooldb

#include "filters/zip_archive.h"

#include <zlib.h>

#include <cstdint>
#include <vector>

namespace tooldb {
namespace {

constexpr std::string_view kLocalHeader = "PK\x03\x04";
constexpr std::string_view kDirectoryEntry = "PK\x01\x02";
constexpr std::string_view kDirectoryEnd = "PK\x05\x06";
constexpr std::size_t kLocalHeaderSize = 30;
constexpr std::size_t kDirectoryEntrySize = 46;
constexpr std::size_t kDirectoryEndSize = 22;
constexpr unsigned kStored = 0;
constexpr unsigned kDeflated = 8;
/// No tool library is larger; an archive that claims more is damaged or made to harm.
constexpr std::size_t kLargestMember = std::size_t{256} << 20;

/// Little-endian numbers of a record; 0 beyond its end.
class Record {
 public:
  explicit Record(std::string_view bytes) : bytes_(bytes) {}

  unsigned Short(std::size_t at) const { return Byte(at) | Byte(at + 1) << 8; }
  std::uint32_t Long(std::size_t at) const { return Short(at) | Short(at + 2) << 16; }

 private:
  unsigned Byte(std::size_t at) const {
    return at < bytes_.size() ? static_cast<unsigned char>(bytes_[at]) : 0;
  }

  std::string_view bytes_;
};

struct Member {
  unsigned method = 0;
  std::uint32_t checksum = 0;
  std::uint32_t packed_size = 0;
  std::uint32_t size = 0;
  std::uint32_t header_at = 0;
};

/// From `at` on; empty beyond the end.
std::string_view tail(std::string_view bytes, std::size_t at) {
  return at < bytes.size() ? bytes.substr(at) : std::string_view();
}

std::optional<Member> find_member(std::string_view archive, std::string_view name) {
  const std::size_t end = archive.rfind(kDirectoryEnd);
  if (end == std::string_view::npos || archive.size() - end < kDirectoryEndSize) {
    return std::nullopt;
  }
  std::size_t at = Record(archive.substr(end)).Long(16);
  while (tail(archive, at).starts_with(kDirectoryEntry)) {
    const Record entry(tail(archive, at));
    const unsigned name_length = entry.Short(28);
    if (tail(archive, at + kDirectoryEntrySize).substr(0, name_length) == name) {
      return Member{entry.Short(10), entry.Long(16), entry.Long(20), entry.Long(24),
                    entry.Long(42)};
    }
    at += kDirectoryEntrySize + name_length + entry.Short(30) + entry.Short(32);
  }
  return std::nullopt;
}

std::string_view packed_bytes(std::string_view archive, const Member& member) {
  const std::string_view header = tail(archive, member.header_at);
  if (!header.starts_with(kLocalHeader)) return {};
  const Record record(header);
  return tail(header, kLocalHeaderSize + record.Short(26) + record.Short(28))
      .substr(0, member.packed_size);
}

std::optional<std::string> inflated(std::string_view packed, std::size_t size) {
  std::vector<Bytef> input(packed.begin(), packed.end());  // zlib's input is not const
  z_stream stream{};
  if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) return std::nullopt;
  stream.next_in = input.data();
  stream.avail_in = static_cast<uInt>(input.size());
  std::vector<Bytef> output(size + 1);  // room for one byte too many
  stream.next_out = output.data();
  stream.avail_out = static_cast<uInt>(output.size());
  const int answer = inflate(&stream, Z_FINISH);
  const bool whole = answer == Z_STREAM_END && stream.total_out == size;
  inflateEnd(&stream);
  if (!whole) return std::nullopt;
  return std::string(output.begin(), output.end() - 1);
}

bool has_checksum(const std::string& text, std::uint32_t checksum) {
  const std::vector<Bytef> bytes(text.begin(), text.end());
  return crc32(0, bytes.data(), static_cast<uInt>(bytes.size())) == checksum;
}

}  // namespace

bool is_zip(std::string_view bytes) { return bytes.starts_with(kLocalHeader); }

std::optional<std::string> unzip_member(std::string_view archive, std::string_view name,
                                        std::string& problem) {
  const std::optional<Member> member = find_member(archive, name);
  if (!member) {
    problem = "the archive is damaged or has no member " + std::string(name);
    return std::nullopt;
  }
  const std::string_view packed = packed_bytes(archive, *member);
  std::optional<std::string> text;
  if (member->size <= kLargestMember && packed.size() == member->packed_size) {
    if (member->method == kStored) text = std::string(packed);
    if (member->method == kDeflated) text = inflated(packed, member->size);
  }
  if (!text || text->size() != member->size || !has_checksum(*text, member->checksum)) {
    problem = std::string(name) + " in the archive is damaged, or packed in an unknown way";
    return std::nullopt;
  }
  return text;
}

}  // namespace tooldb

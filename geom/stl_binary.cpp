#include "geom/stl_binary.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <span>

#include "geom/fresh_memory.h"
#include "geom/parallel.h"
#include "geom/stl.h"

namespace tooldb {
namespace {

constexpr std::size_t kHeaderBytes = 80;
constexpr std::size_t kStart = kHeaderBytes + 4;
constexpr std::size_t kFacetBytes = 50;
constexpr std::size_t kFacetsPerBlock = 32768;  // of a file: 1.6 MB, that stay in the cache
constexpr std::size_t kFacetsPerTask = 2048;
constexpr std::string_view kHeader = "binary STL";

std::uint32_t word_at(const char* p) {
  std::array<unsigned char, 4> bytes;  // NOLINT(*-member-init): filled by memcpy
  std::memcpy(bytes.data(), p, bytes.size());
  if constexpr (std::endian::native == std::endian::big) std::ranges::reverse(bytes);
  return std::bit_cast<std::uint32_t>(bytes);
}

void append_word(std::string& out, std::uint32_t word) {
  for (unsigned i = 0; i < 4; ++i) out += static_cast<char>(word >> (8 * i) & 0xFFU);
}

Vec3 vector_at(const char* p) {
  const auto number = [&](int i) { return double{std::bit_cast<float>(word_at(p + 4 * i))}; };
  return {number(0), number(1), number(2)};
}

void append_vector(std::string& out, const Vec3& v) {
  for (double x : {v.x, v.y, v.z}) {
    // Adding 0 leaves no negative zero.
    append_word(out, std::bit_cast<std::uint32_t>(static_cast<float>(x) + 0.0F));
  }
}

Facet facet_at(const char* p) {
  Facet facet{vector_at(p + 12), vector_at(p + 24), vector_at(p + 36), {}};
  facet.n = facet_normal(facet.a, facet.b, facet.c);
  return facet;
}

// What was met in a block, by any of its tasks.
struct Findings {
  std::atomic<std::size_t> first_bad = std::numeric_limits<std::size_t>::max();
  std::atomic<bool> has_empty = false;

  void Bad(std::size_t index) {
    std::size_t known = first_bad.load();
    while (index < known && !first_bad.compare_exchange_weak(known, index)) {
    }
  }
};

void fill(std::span<Facet> facets, const char* bytes, Findings& findings) {
  parallel_for(facets.size(), kFacetsPerTask, [&](std::size_t begin, std::size_t end) {
    bool has_empty = false;
    for (std::size_t i = begin; i < end; ++i) {
      Facet& f = facets[i];
      f = facet_at(bytes + i * kFacetBytes);
      if (!is_finite(f.a) || !is_finite(f.b) || !is_finite(f.c)) findings.Bad(i);
      has_empty |= f.n == Vec3{};
    }
    if (has_empty) findings.has_empty = true;
  });
}

std::string in_facet(std::uint64_t index, std::uint64_t count) {
  return "facet " + std::to_string(index + 1) + " of " + std::to_string(count) + ", at byte " +
         std::to_string(kStart + index * kFacetBytes) + ", ";
}

// The number of facets to read: the size rules where it is a whole number of them.
std::optional<std::uint64_t> facet_count(const StlLayout& layout) {
  if (layout.spare == 0) return layout.whole;
  if (layout.counted <= layout.whole) return layout.counted;
  return std::nullopt;
}

}  // namespace

StlLayout stl_layout(ByteSource& source) {
  const std::uint64_t size = source.Size();
  if (size < kStart) return {};
  const std::string_view count = source.Part(kHeaderBytes, 4);
  if (count.size() < 4) return {};
  return {true, word_at(count.data()), (size - kStart) / kFacetBytes,
          (size - kStart) % kFacetBytes};
}

std::optional<std::vector<Facet>> read_stl_binary(ByteSource& source, std::string& error) {
  const StlLayout layout = stl_layout(source);
  const auto count = facet_count(layout);
  if (!count) {
    error = in_facet(layout.whole, layout.counted) + "is cut off by the end of the file";
    return std::nullopt;
  }
  std::vector<Facet> mesh;
  mesh.reserve(static_cast<std::size_t>(*count));
  touch_spare(mesh, mesh.capacity());
  Findings findings;
  for (std::uint64_t read = 0; read < *count;) {
    const auto wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(kFacetsPerBlock, *count - read));
    const std::string_view bytes = source.Part(kStart + read * kFacetBytes, wanted * kFacetBytes);
    if (bytes.size() < wanted * kFacetBytes) {
      error = in_facet(read + bytes.size() / kFacetBytes, *count) + "cannot be read";
      return std::nullopt;
    }
    mesh.resize(mesh.size() + wanted);
    fill(std::span(mesh).last(wanted), bytes.data(), findings);
    if (findings.first_bad != std::numeric_limits<std::size_t>::max()) {
      error = in_facet(read + findings.first_bad, *count) + "has a corner that is no finite number";
      return std::nullopt;
    }
    read += wanted;
  }
  if (findings.has_empty) std::erase_if(mesh, [](const Facet& f) { return f.n == Vec3{}; });
  return mesh;
}

std::string stl_binary(std::span<const Facet> mesh) {
  std::string out;
  out.reserve(kStart + mesh.size() * kFacetBytes);
  out += kHeader;
  out.append(kHeaderBytes - kHeader.size(), '\0');
  append_word(out, static_cast<std::uint32_t>(mesh.size()));
  for (const Facet& f : mesh) {
    for (const Vec3* v : {&f.n, &f.a, &f.b, &f.c}) append_vector(out, *v);
    out.append(2, '\0');
  }
  return out;
}

}  // namespace tooldb

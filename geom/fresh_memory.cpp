#include "geom/fresh_memory.h"

#include <algorithm>
#include <new>

#include "geom/parallel.h"

namespace tooldb {
namespace {

// No system has smaller pages.
constexpr std::size_t kPage = 4096;
constexpr std::size_t kPagesPerTask = 64;

}  // namespace

void touch_spare(std::vector<Facet>& facets, std::size_t count) {
  count = std::min(count, facets.capacity() - facets.size());
  auto* const spare = reinterpret_cast<std::byte*>(facets.data() + facets.size());
  const std::size_t pages = count * sizeof(Facet) / kPage;
  parallel_for(pages, kPagesPerTask, [&](std::size_t begin, std::size_t end) {
    for (std::size_t page = begin; page < end; ++page) {
      // Not merely a write, which could be left out as it is never read.
      auto* const touched = ::new (spare + page * kPage) volatile std::byte;
      *touched = std::byte{0};
    }
  });
}

}  // namespace tooldb

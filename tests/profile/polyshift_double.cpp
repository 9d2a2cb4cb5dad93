// An offset library for tests. It hands out the contour times the distance, mirrored, beside a
// smaller and a degenerate one, and fails at a distance of 0. With INCOMPLETE it lacks all entry
// points but the first.

#include <tuple>
#include <utility>
#include <vector>

#if defined(_WIN32)
#define ENTRY extern "C" __declspec(dllexport)
#else
#define ENTRY extern "C" __attribute__((visibility("default")))
#endif

namespace {

using Polygons = std::vector<std::vector<std::pair<double, double>>>;

int open_handles = 0;

[[maybe_unused]] Polygons& polygons(void* handle) { return *static_cast<Polygons*>(handle); }

}  // namespace

ENTRY void* polyshift_create() {
  ++open_handles;
  return new Polygons(1);
}

#if !defined(INCOMPLETE)

ENTRY void polyshift_push_back(void* handle, double x, double y) {
  polygons(handle).front().emplace_back(y, x);
}

ENTRY int polyshift_offset(void* handle, double d) {
  if (d == 0) return 0;
  for (auto& [x, y] : polygons(handle).front()) std::tie(x, y) = std::pair(d * x, d * y);
  polygons(handle).insert(polygons(handle).begin(), {{{0, 0}, {1, 0}, {1, 1}}, {{0, 0}, {5, 5}}});
  return 1;
}

ENTRY int polyshift_get_num_polygons(void* handle) {
  return static_cast<int>(polygons(handle).size());
}

ENTRY int polyshift_get_num_vertex_in_polygon(void* handle, int i) {
  return static_cast<int>(polygons(handle)[static_cast<unsigned>(i)].size());
}

ENTRY void polyshift_get_vertex_in_polygon(void* handle, int i, int vertex, double* x, double* y) {
  std::tie(*x, *y) = polygons(handle)[static_cast<unsigned>(i)][static_cast<unsigned>(vertex)];
}

ENTRY void polyshift_destroy(void* handle) {
  --open_handles;
  delete &polygons(handle);
}

ENTRY int polyshift_test_open_handles() { return open_handles; }

#endif

// An offset library for tests. It grows the box around a contour, hands it out clockwise beside a
// smaller one and a degenerate one, and fails at a distance of 0.

#include <algorithm>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

#if defined(_WIN32)
#define ENTRY extern "C" __declspec(dllexport)
#else
#define ENTRY extern "C" __attribute__((visibility("default")))
#endif

namespace {

struct Contour {
  double left = std::numeric_limits<double>::max();
  double right = std::numeric_limits<double>::lowest();
  double low = left;
  double high = right;
  std::vector<std::vector<std::pair<double, double>>> polygons;
};

int open_handles = 0;

Contour& contour(void* handle) { return *static_cast<Contour*>(handle); }

}  // namespace

ENTRY void* polyshift_create() {
  ++open_handles;
  return new Contour;
}

ENTRY void polyshift_push_back(void* handle, double x, double y) {
  Contour& c = contour(handle);
  c.left = std::min(c.left, x);
  c.right = std::max(c.right, x);
  c.low = std::min(c.low, y);
  c.high = std::max(c.high, y);
}

ENTRY int polyshift_offset(void* handle, double d) {
  if (d == 0) return 0;
  const auto& [left, right, low, high, unused] = contour(handle);
  contour(handle).polygons = {
      {{0, 0}, {1, 0}, {1, 1}},
      {{0, 0}, {5, 5}},
      {{left - d, low - d}, {left - d, high + d}, {right + d, high + d}, {right + d, low - d}},
  };
  return 1;
}

ENTRY int polyshift_get_num_polygons(void* handle) {
  return static_cast<int>(contour(handle).polygons.size());
}

ENTRY int polyshift_get_num_vertex_in_polygon(void* handle, int polygon) {
  return static_cast<int>(contour(handle).polygons[static_cast<unsigned>(polygon)].size());
}

ENTRY void polyshift_get_vertex_in_polygon(void* handle, int polygon, int vertex, double* x,
                                           double* y) {
  const auto& points = contour(handle).polygons[static_cast<unsigned>(polygon)];
  std::tie(*x, *y) = points[static_cast<unsigned>(vertex)];
}

ENTRY void polyshift_destroy(void* handle) {
  --open_handles;
  delete static_cast<Contour*>(handle);
}

ENTRY int polyshift_test_open_handles() { return open_handles; }

#include "tooldb/profile/polyshift.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "geom/polyline.h"
#include "tooldb/platform/guard.h"
#include "tooldb/platform/process.h"
#include "tooldb/platform/safe_write.h"

namespace tooldb {
namespace {

// A file of another system's kind is no library, and passed over.
constexpr const char* kFileNames[] = {"PolyshiftDLL.dll", "PolyshiftDLL.so"};

std::optional<Polyshift> load_beside_host() {
  tdbError error;
  const std::string folder =
      guarded(error, std::string(), [] { return folder_of(executable_path()); });
  if (folder.empty()) return std::nullopt;
  for (const char* name : kFileNames) {
    if (auto library = Polyshift::Load(folder + "/" + name)) return library;
  }
  return std::nullopt;
}

bool is_polygon(const Polyline& points) {
  return points.size() >= 3 && std::ranges::all_of(points, [](Vec2 p) { return is_finite(p); }) &&
         signed_area(points) != 0;
}

// Counter-clockwise, the first point repeated.
void normalise(Polyline& polygon) {
  if (polygon.front() == polygon.back()) polygon.pop_back();
  if (signed_area(polygon) < 0) std::ranges::reverse(polygon);
  polygon.push_back(Vec2(polygon.front()));
}

}  // namespace

std::optional<Polyshift> Polyshift::Load(const std::string& path) {
  const auto library = DynamicLibrary::Load(path);
  if (!library) return std::nullopt;
  EntryPoints calls{};
  const auto find = [&](auto& function, const char* name) {
    function = library->Find<std::remove_reference_t<decltype(function)>>(name);
    return function != nullptr;
  };
  const bool complete =
      find(calls.create, "polyshift_create") && find(calls.push_back, "polyshift_push_back") &&
      find(calls.offset, "polyshift_offset") &&
      find(calls.get_num_polygons, "polyshift_get_num_polygons") &&
      find(calls.get_num_vertex_in_polygon, "polyshift_get_num_vertex_in_polygon") &&
      find(calls.get_vertex_in_polygon, "polyshift_get_vertex_in_polygon") &&
      find(calls.destroy, "polyshift_destroy");
  return complete ? std::optional(Polyshift(calls)) : std::nullopt;
}

const Polyshift* Polyshift::BesideHost() {
  static const std::optional<Polyshift> kLibrary = load_beside_host();
  return kLibrary ? &*kLibrary : nullptr;
}

std::optional<std::vector<Polyline>> Polyshift::Offset(const Polyline& contour,
                                                       double distance) const {
  const std::unique_ptr<void, void (*)(Handle)> handle(calls_.create(), calls_.destroy);
  if (!handle) return std::nullopt;
  for (const Vec2 p : contour) calls_.push_back(handle.get(), p.x, p.y);
  if (calls_.offset(handle.get(), distance) == 0) return std::nullopt;
  return Polygons(handle.get());
}

std::vector<Polyline> Polyshift::Polygons(Handle handle) const {
  std::vector<Polyline> polygons;
  for (int i = 0; i < calls_.get_num_polygons(handle); ++i) {
    Polyline polygon = PolygonAt(handle, i);
    if (!is_polygon(polygon)) continue;
    normalise(polygon);
    polygons.push_back(std::move(polygon));
  }
  std::ranges::stable_sort(polygons, std::greater<>(),
                           [](const Polyline& p) { return signed_area(p); });
  return polygons;
}

Polyline Polyshift::PolygonAt(Handle handle, int index) const {
  Polyline points;
  for (int i = 0; i < calls_.get_num_vertex_in_polygon(handle, index); ++i) {
    Vec2 p;
    calls_.get_vertex_in_polygon(handle, index, i, &p.x, &p.y);
    points.push_back(p);
  }
  return points;
}

}  // namespace tooldb

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "geom/vector_math.h"
#include "tooldb/platform/dynamic_library.h"

/// @file
/// The polygon-offset library that a host may put beside its executable.
///
/// Its C entry points, with a handle that stands for one contour:
///
///     void*  polyshift_create(void);                      null on failure
///     void   polyshift_push_back(void*, double x, double y);
///     int    polyshift_offset(void*, double distance);    0 on failure; positive grows
///     int    polyshift_get_num_polygons(void*);
///     int    polyshift_get_num_vertex_in_polygon(void*, int polygon);
///     void   polyshift_get_vertex_in_polygon(void*, int polygon, int vertex, double* x, double*
///     y); void   polyshift_destroy(void*);

namespace tooldb {

/// The library, loaded and with every entry point present.
class Polyshift {
 public:
  /// Nothing when there is no such file, it is no library, or an entry point is missing.
  static std::optional<Polyshift> Load(const std::string& path);
  /// The one beside the host's executable, looked for once; null when there is none.
  static const Polyshift* BesideHost();

  /// Offsets a closed contour, as `tdbProfile::OffsetProfile2` does.
  /// @return nothing when the library fails
  std::optional<std::vector<Polyline>> Offset(const Polyline& contour, double distance) const;

 private:
  using Handle = void*;

  struct EntryPoints {
    Handle (*create)();
    void (*push_back)(Handle, double, double);
    int (*offset)(Handle, double);
    int (*get_num_polygons)(Handle);
    int (*get_num_vertex_in_polygon)(Handle, int);
    void (*get_vertex_in_polygon)(Handle, int, int, double*, double*);
    void (*destroy)(Handle);
  };

  explicit Polyshift(const EntryPoints& calls) : calls_(calls) {}
  std::vector<Polyline> Polygons(Handle handle) const;
  Polyline PolygonAt(Handle handle, int index) const;

  EntryPoints calls_;
};

}  // namespace tooldb

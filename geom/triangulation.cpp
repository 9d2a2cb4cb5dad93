#include "geom/triangulation.h"

#if defined(_WIN32) && !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <GL/glu.h>

#include <algorithm>
#include <limits>
#include <memory>

// The calling convention that the tessellator's callbacks have on Windows.
#ifndef CALLBACK
#define CALLBACK
#endif

namespace tooldb {
namespace {

using Tessellator = std::unique_ptr<GLUtesselator, decltype(&gluDeleteTess)>;

struct Corner {
  std::array<GLdouble, 3> at;
  std::uint32_t index;
};

// What the callbacks work on; no exception may leave them, for their caller is C.
struct Tessellation {
  std::vector<Corner> corners;
  std::vector<std::uint32_t> indices;
  bool failed = false;
};

Tessellation& tessellation(void* user) { return *static_cast<Tessellation*>(user); }

void CALLBACK on_vertex(void* vertex, void* user) {
  Tessellation& t = tessellation(user);
  try {
    t.indices.push_back(static_cast<const Corner*>(vertex)->index);
  } catch (...) {
    t.failed = true;
  }
}

// With an edge-flag callback the tessellator makes single triangles, no fans and no strips.
void CALLBACK on_edge_flag(GLboolean, void*) {}

// Called where edges cross, and where rings touch in a point that is a corner of both: only the
// latter gives a corner that is there already.
void CALLBACK on_combine(GLdouble at[3], void* vertices[4], GLfloat*, void** result, void* user) {
  const auto* corner = static_cast<const Corner*>(vertices[0]);
  if (!std::equal(at, at + 2, corner->at.begin())) tessellation(user).failed = true;
  *result = vertices[0];
}

void CALLBACK on_error(GLenum, void* user) { tessellation(user).failed = true; }

template <class Function>
void set_callback(GLUtesselator* tess, GLenum which, Function* function) {
  gluTessCallback(tess, which, reinterpret_cast<void(CALLBACK*)()>(function));
}

void set_up(GLUtesselator* tess) {
  set_callback(tess, GLU_TESS_VERTEX_DATA, on_vertex);
  set_callback(tess, GLU_TESS_EDGE_FLAG_DATA, on_edge_flag);
  set_callback(tess, GLU_TESS_COMBINE_DATA, on_combine);
  set_callback(tess, GLU_TESS_ERROR_DATA, on_error);
  gluTessProperty(tess, GLU_TESS_WINDING_RULE, GLU_TESS_WINDING_POSITIVE);
  gluTessNormal(tess, 0, 0, 1);
}

// The tessellator keeps pointers to the corners, so all of them stand before it starts.
bool add_corners(Tessellation& t, const Rings& rings) {
  std::size_t count = 0;
  for (const Polyline& ring : rings) count += ring.size();
  if (count > std::numeric_limits<std::uint32_t>::max()) return false;
  t.corners.reserve(count);
  for (const Polyline& ring : rings) {
    for (Vec2 p : ring) {
      t.corners.push_back({{p.x, p.y, 0}, static_cast<std::uint32_t>(t.corners.size())});
    }
  }
  return true;
}

void run(GLUtesselator* tess, Tessellation& t, const Rings& rings) {
  gluTessBeginPolygon(tess, &t);
  Corner* corner = t.corners.data();
  for (const Polyline& ring : rings) {
    gluTessBeginContour(tess);
    for (std::size_t i = 0; i < ring.size(); ++i, ++corner) {
      gluTessVertex(tess, corner->at.data(), corner);
    }
    gluTessEndContour(tess);
  }
  gluTessEndPolygon(tess);
}

}  // namespace

std::optional<std::vector<IndexTriangle>> triangulate(const Rings& rings) {
  Tessellation t;
  const Tessellator tess(gluNewTess(), &gluDeleteTess);
  if (!tess || !add_corners(t, rings)) return std::nullopt;
  set_up(tess.get());
  run(tess.get(), t, rings);
  if (t.failed || t.indices.size() % 3 != 0) return std::nullopt;
  std::vector<IndexTriangle> triangles;
  triangles.reserve(t.indices.size() / 3);
  for (std::size_t i = 0; i < t.indices.size(); i += 3) {
    triangles.push_back({t.indices[i], t.indices[i + 1], t.indices[i + 2]});
  }
  return triangles;
}

}  // namespace tooldb

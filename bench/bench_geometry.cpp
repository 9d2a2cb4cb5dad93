#include <malloc.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <polyclipping/clipper.hpp>
#include <random>

#include "bench/benchmarks.h"
#include "geom/revolve.h"
#include "geom/stl.h"
#include "tooldb/profile.h"
#include "tooldb/profile/stl_file.h"

namespace bench {
namespace {

using Mesh = std::vector<Triangle<double>>;

/// A wavy outline of `count` points, from the axis out, up and back.
std::vector<Point2d<double>> wavy_outline(int count, double height) {
  std::vector<Point2d<double>> outline{{0, 0}};
  for (int i = 0; i < count - 2; ++i) {
    const double at = static_cast<double>(i) / (count - 3);
    outline.push_back({10 + std::sin(40 * at), height * at});
  }
  outline.push_back({0, height});
  return outline;
}

/// The chord tolerance that makes `segments` facets round a circle of the wavy outline.
double tolerance_for(int segments) { return 11 * (1 - std::cos(std::numbers::pi / segments)); }

Mesh revolved(const std::vector<Point2d<double>>& outline, int segments) {
  Mesh mesh;
  const bool made = tooldb::revolve(
      outline, {.chord_tolerance = tolerance_for(segments), .start_deg = 0, .span_deg = 360}, mesh);
  if (!made) throw std::runtime_error("the outline was refused");
  return mesh;
}

Figure revolve_figure(const Options& options, int points, int segments) {
  const auto outline = wavy_outline(points, 80);
  const Mesh result = revolved(outline, segments);
  return compare(
      {.operation = "Turn an outline into a mesh / memcpy of the triangles",
       .size = std::to_string(result.size()) + " facets",
       .goal = 2.5},
      options.rounds, [&] { return seconds([&] { keep(revolved(outline, segments).data()); }); },
      [&] {
        // Into fresh memory, as the mesh is.
        return seconds([&] {
          const auto bytes = result.size() * sizeof(result[0]);
          const std::unique_ptr<char[]> copy(new char[bytes]);
          std::memcpy(copy.get(), result.data(), bytes);
          keep(copy.get());
        });
      });
}

std::vector<double> vertex_heights(const Mesh& mesh) {
  std::vector<double> heights;
  heights.reserve(mesh.size() * 3);
  for (const auto& facet : mesh) {
    for (const auto* corner : {&facet.a, &facet.b, &facet.c}) heights.push_back(corner->z);
  }
  return heights;
}

Figure silhouette_figure(const Options& options, int points, int segments, const char* edges) {
  const Mesh mesh = revolved(wavy_outline(points, 80), segments);
  return compare(
      {.operation = std::string("Silhouette, ") + edges + " edges / sort of the heights",
       .size = std::to_string(mesh.size()) + " facets",
       .goal = 3},
      options.rounds,
      [&] {
        return seconds([&] {
          std::vector<Point2d<double>> outline;
          tdbProfile::ExtractProfile(mesh, outline, 0.01F);
          keep(outline.data());
        });
      },
      [&] {
        std::vector<double> heights = vertex_heights(mesh);
        std::mt19937 random(1);
        std::ranges::shuffle(heights, random);
        return seconds([&] { std::ranges::sort(heights); });
      });
}

Figure offset_figure(const Options& options, int points) {
  auto contour = wavy_outline(points, 80);
  contour.push_back(contour.front());
  const double scale = 1 << 20;
  ClipperLib::Path path;
  for (const auto& p : contour) {
    path.emplace_back(std::llround(p.x * scale), std::llround(p.y * scale));
  }
  // Often enough in a round for the clock.
  const int calls = std::max(1, 20000 / points);
  const auto per_call = [calls](auto&& call) {
    return cpu_seconds([&] {
             for (int i = 0; i < calls; ++i) call();
           }) /
           calls;
  };
  return compare(
      {.operation = "Offset an outline / one ClipperOffset call",
       .size = std::to_string(points) + " points",
       .goal = 1.1},
      options.rounds,
      [&] { return per_call([&] { keep(tdbProfile::OffsetProfile2(contour, 0.5).data()); }); },
      [&] {
        return per_call([&] {
          ClipperLib::ClipperOffset offset(2, 0.005 * scale);
          offset.AddPath(path, ClipperLib::jtMiter, ClipperLib::etClosedPolygon);
          ClipperLib::Paths result;
          offset.Execute(result, 0.5 * scale);
          keep(result.data());
        });
      });
}

}  // namespace

std::vector<Figure> bench_meshes(const Options& options) {
  if (options.quick) return {revolve_figure(options, 100, 512)};
  return {revolve_figure(options, 100, 512), revolve_figure(options, 500, 1024),
          revolve_figure(options, 1000, 2048)};
}

std::vector<Figure> bench_stl(const Options& options) {
  // Both sides into fresh memory, whatever the measurements before have left in the heap.
  mallopt(M_MMAP_THRESHOLD, 1 << 20);
  const Mesh mesh =
      options.quick ? revolved(wavy_outline(100, 80), 256) : revolved(wavy_outline(978, 80), 512);
  const ScratchFolder folder(options);
  const auto figure = [&](const char* form, const std::string& bytes, double goal) {
    const auto path = folder.Path() / (std::string(form) + ".stl");
    write_file(path, bytes);
    return compare(
        {.operation = std::string("Read STL, ") + form + " / read the file",
         .size = std::to_string(mesh.size()) + " facets",
         .goal = goal},
        options.rounds,
        [&] { return seconds([&] { keep(tooldb::read_stl_file(path.string()).data()); }); },
        [&] { return seconds([&] { keep(read_file(path).data.get()); }); });
  };
  return {figure("binary", tooldb::stl_binary(mesh), 2.2),
          figure("text", tooldb::stl_text(mesh, "bench"), 2.0)};
}

std::vector<Figure> bench_outlines(const Options& options) {
  const int size = options.quick ? 10 : 1;
  return {offset_figure(options, 1000), offset_figure(options, 20000 / size),
          silhouette_figure(options, 2002 / size, 256, "short"),
          silhouette_figure(options, 52, 10000 / size, "long")};
}

}  // namespace bench

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "tooldb/contour.h"
#include "tooldb/tool_parts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  CEntityDB entities;
  if (entities.Read(text, false, 0)) {
    entities.ConcatenateEntities();
    std::vector<Point2d<double>> points;
    entities.GetXZProfile(points, 0.1);
    for (const auto& p : points) {
      if (!std::isfinite(p.x) || !std::isfinite(p.y)) std::abort();
    }
  }
  tdbToolCutter cutter(5);
  cutter.SetProfileXml(text.c_str());
  std::vector<std::vector<Point2d<double>>> contours;
  if (cutter.GetProfile(nullptr, contours, 0.1, 0) && contours.empty()) std::abort();
  return 0;
}

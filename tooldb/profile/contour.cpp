#include "tooldb/contour.h"

#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/profile/contour_text.h"

using tooldb::ContourSegment;

struct CEntityDB::Impl {
  std::vector<ContourSegment> segments;
  bool chained = false;
};

namespace {

std::string file_text(const std::string& path) {
  tdbError error;
  return tooldb::guarded(error, std::string(), [&] { return tooldb::file_system().Read(path); });
}

}  // namespace

CEntityDB::CEntityDB() : impl_(std::make_unique<Impl>()) {}
CEntityDB::~CEntityDB() = default;

bool CEntityDB::Read(const std::string& text, bool is_path, int /*mode*/) {
  auto segments = tooldb::parse_contour(is_path ? file_text(text) : text);
  impl_->chained = false;
  impl_->segments = std::move(segments).value_or(std::vector<ContourSegment>());
  return !impl_->segments.empty();
}

void CEntityDB::ConcatenateEntities() { impl_->chained = true; }

bool CEntityDB::GetXZProfile(std::vector<Point2d<double>>& points, double tolerance) const {
  const std::span<const ContourSegment> segments(impl_->segments);
  if (segments.empty() || !(tolerance > 0)) return false;
  const std::size_t step = impl_->chained ? segments.size() : 1;
  for (std::size_t i = 0; i < segments.size(); i += step) {
    const auto part = tooldb::flatten(segments.subspan(i, step), tolerance);
    points.insert(points.end(), part.begin(), part.end());
  }
  return true;
}

bool CEntityDB::GetXYProfile(std::vector<Point2d<double>>& points, double tolerance) const {
  return GetXZProfile(points, tolerance);
}

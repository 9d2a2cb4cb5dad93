#include "tooldb/contour.h"

#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/profile/contour_text.h"

using tooldb::ContourSegment;
using tooldb::guarded;

struct CEntityDB::Impl {
  std::vector<ContourSegment> segments;
  bool chained = false;
};

CEntityDB::CEntityDB() : impl_(std::make_unique<Impl>()) {}
CEntityDB::~CEntityDB() = default;

bool CEntityDB::Read(const std::string& text, bool is_path, int /*mode*/) {
  impl_->chained = false;
  impl_->segments.clear();
  return guarded(false, [&] {
    if (auto segments = tooldb::parse_contour(is_path ? tooldb::file_system().Read(text) : text)) {
      impl_->segments = *std::move(segments);
    }
    return !impl_->segments.empty();
  });
}

void CEntityDB::ConcatenateEntities() { impl_->chained = true; }

bool CEntityDB::GetXZProfile(std::vector<Point2d<double>>& points, double tolerance) const {
  const std::span<const ContourSegment> segments(impl_->segments);
  if (segments.empty() || !(tolerance > 0)) return false;
  return guarded(false, [&] {
    std::vector<Point2d<double>> added;
    const std::size_t step = impl_->chained ? segments.size() : 1;
    for (std::size_t i = 0; i < segments.size(); i += step) {
      const auto part = tooldb::flatten(segments.subspan(i, step), tolerance);
      added.insert(added.end(), part.begin(), part.end());
    }
    points.insert(points.end(), added.begin(), added.end());
    return true;
  });
}

bool CEntityDB::GetXYProfile(std::vector<Point2d<double>>& points, double tolerance) const {
  return GetXZProfile(points, tolerance);
}

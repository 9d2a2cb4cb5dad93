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
    const auto added = impl_->chained ? tooldb::flatten(segments, tolerance)
                                      : tooldb::flatten_each(segments, tolerance);
    points.insert(points.end(), added.begin(), added.end());
    return true;
  });
}

bool CEntityDB::GetXYProfile(std::vector<Point2d<double>>& points, double tolerance) const {
  return GetXZProfile(points, tolerance);
}

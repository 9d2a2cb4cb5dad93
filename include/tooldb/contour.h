#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tooldb/export.h"
#include "tooldb/geometry.h"

/// Reader of contour XML: LINE and ARC elements, without an enclosing element. Each number pair
/// is (distance from the axis, position along the axis).
class TDB_EXPORT CEntityDB {
 public:
  CEntityDB();
  CEntityDB(const CEntityDB&) = delete;
  CEntityDB& operator=(const CEntityDB&) = delete;
  ~CEntityDB();

  /// Replaces the entities by those of `text`.
  /// @param is_path  `text` is the path of a file that holds the contour
  /// @param mode     reserved, 0
  /// @return false, and no entities, for text that is not a contour: broken XML, an unknown
  ///         element or direction, a missing or surplus number, a number that is not finite
  bool Read(const std::string& text, bool is_path, int mode);

  /// Joins the entities end to start into chains, in order; a gap begins a new chain.
  void ConcatenateEntities();

  /// Appends the chained entities as one point list, arcs replaced by chords that depart from
  /// them by at most `tolerance` (the contour's unit, > 0); by more where all of them would need
  /// over 250 000 chords.
  /// @return false, and nothing appended, without entities or for a tolerance that is not positive
  bool GetXZProfile(std::vector<Point2d<double>>& points, double tolerance) const;
  /// The same points; the plane that a contour is drawn in is the caller's.
  bool GetXYProfile(std::vector<Point2d<double>>& points, double tolerance) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

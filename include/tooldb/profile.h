#pragma once

#include <string>
#include <vector>

#include "tooldb/export.h"
#include "tooldb/geometry.h"

class kinSceneManager;
class tdbItem;
class tdbTool;
class tdbToolCutter;

/// Dimensions of a turning insert (ISO 1832 shapes; sizes as in ISO 13399).
struct tdbInsertGeometry {
  int shape = 17;              ///< kind of cutting tool, 17 to 25
  double inscribedCircle = 0;  ///< mm; 0: from the edge length
  double cornerRadius = 0;     ///< mm; 0: sharp corners
  double includedAngle = 0;    ///< degrees, of the cutting corner; 0: the shape's own
  double edgeLength = 0;       ///< mm, over sharp corners; 0: from the inscribed circle
  double thickness = 0;        ///< mm; not part of the outline
};

/// One dimension of a cutter, shank or holder: a parameter that its outline is made of.
struct tdbDimension {
  enum class Kind {
    kDiameter,
    kRadius,
    kLength,
    kAngleFromAxis,  ///< degrees per side, from the tool axis
    kAngleFromFace,  ///< degrees per side, from the plane across the axis
    kAngleTotal,     ///< degrees over both sides
    kChoice,         ///< a whole number that selects a variant
    kText            ///< no number
  };
  std::string name;     ///< of the parameter
  std::string meaning;  ///< in words, such as "tip diameter"
  Kind kind = Kind::kLength;
  std::string text;  ///< as the item has it; empty when it is not set
  /// What the outline is made with: the parameter, or its default when it is not set. Lengths in
  /// the item's unit. NaN for a text, and when the parameter is no number or its default cannot
  /// be told because the outline is refused.
  double value = 0;
};

/// Operations on 2D profiles. Points are (distance from the axis, position along it).
class TDB_EXPORT tdbProfile {
 public:
  /// The outer silhouette of a mesh turned about the Z axis, from the axis out, up and back; it
  /// lies within `tolerance` of the true one. A tolerance that is not positive counts as 1e-3.
  /// @return false, and no points, only when no triangle extends along Z
  static bool ExtractProfile(const std::vector<Triangle<double>>& triangles,
                             std::vector<Point2d<double>>& points, float tolerance);

  /// Offsets a closed contour; a positive distance grows it whatever its direction. Right angles
  /// stay sharp.
  /// @return closed counter-clockwise polygons, first point repeated, largest first; none when
  ///         nothing is left or a number is not finite or beyond 1e6
  static std::vector<std::vector<Point2d<double>>> OffsetProfile2(
      const std::vector<Point2d<double>>& contour, double distance);

  /// Writes the outline of a turning insert as contour XML: closed, counter-clockwise, the
  /// cutting corner down, its nose touching (0, 0).
  /// @return false, and the text untouched, when the dimensions make no insert
  static bool CreateInsertProfile(const tdbInsertGeometry& insert, std::string& contour_xml);

  /// Appends the parts of a cutter's outline that cut, in outline order, one list per unbroken
  /// run.
  /// @return false, and nothing appended, for models and refused outlines
  static bool HilightCuttingProfile(const tdbToolCutter& cutter, double tolerance,
                                    std::vector<std::vector<Point2d<double>>>& pieces);

  /// Why a cutter, shank or holder has no outline, in words: the parameter and the reason; of a
  /// model file, why the library cannot read it. Empty when it has one, and for other items.
  static std::string OutlineError(const tdbItem& item);

  /// The parameters that the outline of a cutter, shank or holder is made of, in the order of the
  /// usual listing; none for contour texts and model files.
  static std::vector<tdbDimension> GetDimensions(const tdbItem& item);

  /// Appends the triangles of an item and of all below it, each placed in the frame of `root` by
  /// the positions of the items between; nothing of the tree is changed. Hidden items are left
  /// out.
  /// @param scene      loads model files; null: the library's own scene manager
  /// @param tolerance  largest distance of the mesh from the true surface, > 0
  /// @return false, and nothing appended, when no item has a shape
  static bool GetAssemblyShape(tdbItem& root, kinSceneManager* scene,
                               std::vector<Triangle<double>>& triangles, double tolerance);

  /// The same for a tool with its section view: where that is enabled, bodies that turn about the
  /// tool's axis are cut open to its start and span angle.
  static bool GetSectionShape(tdbTool& tool, kinSceneManager* scene,
                              std::vector<Triangle<double>>& triangles, double tolerance);
};

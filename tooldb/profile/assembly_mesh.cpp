#include "tooldb/profile/assembly_mesh.h"

#include <cmath>

#include "geom/transform.h"
#include "tooldb/profile/angles.h"
#include "tooldb/profile/placed_items.h"

namespace tooldb {
namespace {

bool append_placed(const PlacedItem& placed, const BodyMesh& how, std::vector<Facet>& mesh) {
  const std::size_t before = mesh.size();
  const bool made = append_body_mesh(*placed.item, how, mesh);
  place_mesh(mesh, before, placed.position);
  return made;
}

// Whether a placement leaves the Z axis where it is.
bool keeps_axis(const Placement& p) {
  constexpr double kRounding = 1e-9;
  const auto is_near = [](double a, double b) { return std::abs(a - b) <= kRounding; };
  return is_near(p(0, 2), 0) && is_near(p(1, 2), 0) && is_near(p(2, 2), 1) && is_near(p(0, 3), 0) &&
         is_near(p(1, 3), 0) && determinant(p) > 0;
}

}  // namespace

bool append_assembly_mesh(tdbItem& root, const BodyMesh& how, std::vector<Facet>& mesh) {
  bool any = false;
  for (const PlacedItem& placed : placed_items(root)) any |= append_placed(placed, how, mesh);
  return any;
}

bool append_section_mesh(tdbTool& tool, const BodyMesh& how, std::vector<Facet>& mesh) {
  if (!tool.IsSectionEnabled()) return append_assembly_mesh(tool, how, mesh);
  bool any = false;
  for (const PlacedItem& placed : placed_items(tool)) {
    BodyMesh section = how;
    const Placement axis = placed.position * shape_placement(*placed.item);
    if (keeps_axis(axis)) {
      section.start_deg =
          tool.GetSectionStartAngle() - std::atan2(axis(1, 0), axis(0, 0)) / kDegree;
      section.span_deg = tool.GetSectionSpanAngle();
    }
    any |= append_placed(placed, section, mesh);
  }
  return any;
}

}  // namespace tooldb

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "apps/bodies.h"
#include "apps/checks/check_item.h"
#include "apps/checks/check_rules.h"
#include "apps/display_text.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

namespace tooldb {
namespace {

constexpr double kMillimetresPerInch = 25.4;
// Files hold six digits: parts that meet may miss one another by so much of the whole.
constexpr double kSlack = 2e-5;
constexpr int kHeights = 32;

struct Part {
  const Body* body;
  Extent extent;
  std::vector<Contour> placed;
};

std::string named(const Part& part) { return "'" + part.body->item->GetName() + "'"; }

// The parts of a turned tool, one above the other.
class Assembly {
 public:
  Assembly(const std::vector<Body>& bodies, double tolerance, const CheckedFile& file,
           Findings& findings)
      : file_(file), findings_(findings), tolerance_(tolerance) {
    for (const Body& body : bodies) {
      const bool counts = body.is_revolved && !body.contours.empty() && body.IsAlongAxis();
      if (counts) parts_.push_back({&body, axial_extent(body), placed_contours(body)});
    }
    std::ranges::stable_sort(parts_, {}, [](const Part& p) { return p.extent.low; });
    if (parts_.empty()) return;
    double top = parts_.front().extent.high;
    for (const Part& part : parts_) top = std::max(top, part.extent.high);
    slack_ = kSlack * (top - parts_.front().extent.low);
  }

  void Check() {
    CheckGaps();
    for (const Part& upper : parts_) {
      for (const Part& lower : parts_) CheckPair(lower, upper);
    }
  }

 private:
  void Add(const Findings::Rule& rule, const Part& part, std::string message) {
    const std::string name = "NAME=\"" + part.body->item->GetName() + '"';
    findings_.Add(rule, file_.Path(), file_.LineOf(name), std::move(message));
  }

  void CheckGaps() {
    if (parts_.empty()) return;
    const Part* highest = &parts_.front();
    for (const Part& part : parts_) {
      const double gap = part.extent.low - highest->extent.high;
      if (gap > slack_) {
        Add(rule::kGap, part,
            fmt::format("between {} and {} there is a gap of {} along the axis", named(*highest),
                        named(part), shown_number(gap)));
      }
      if (part.extent.high > highest->extent.high) highest = &part;
    }
  }

  void CheckPair(const Part& lower, const Part& upper) {
    using Role = Body::Role;
    if (upper.body->role == Role::kHolder && lower.body->role == Role::kCutter) {
      CheckCutterInHolder(lower, upper);
    } else if (upper.body->role == Role::kHolder && lower.body->role == Role::kShank) {
      CheckWidth(rule::kBore, lower, upper, "holder", kHeights);
    } else if (upper.body->role == Role::kShank && lower.body->role == Role::kCutter &&
               upper.body->item->GetParent() == lower.body->item->GetParent()) {
      CheckCutterAndShank(lower, upper);
    }
  }

  void CheckCutterInHolder(const Part& cutter, const Part& holder) {
    const double depth = std::min(cutter.extent.high, holder.extent.high) -
                         std::max(cutter.extent.low, holder.extent.low);
    if (depth <= slack_) return;
    Add(rule::kOverlap, holder,
        fmt::format("cutter {} and holder {} overlap by {} along the axis", named(cutter),
                    named(holder), shown_number(depth)));
  }

  void CheckCutterAndShank(const Part& cutter, const Part& shank) {
    if (shank.extent.high < cutter.extent.high - slack_) {
      Add(rule::kCuttingLength, cutter,
          fmt::format("the cutting length of {} is {}, but the tool ends at {}", named(cutter),
                      shown_number(cutter.extent.Size()),
                      shown_number(shank.extent.high - cutter.extent.low)));
    }
    CheckWidth(rule::kOverlap, shank, cutter, "cutter", 1);
  }

  // Whether a shank is wider than what it stands in, at a height that both have. Out of a ball a
  // neck may come wider than the ball is higher up: of cutters only the lowest height counts.
  void CheckWidth(const Findings::Rule& rule, const Part& shank, const Part& outer,
                  std::string_view outer_name, int heights) {
    const double low = std::max(shank.extent.low, outer.extent.low);
    const double high = std::min(shank.extent.high, outer.extent.high);
    if (high - low <= slack_) return;
    for (int i = 0; i < heights; ++i) {
      const double height = low + slack_ + (high - low - 2 * slack_) * i / heights;
      const double inside = radius_at(shank.placed, height);
      const double outside = radius_at(outer.placed, height);
      if (inside <= outside + 2 * tolerance_ + slack_) continue;
      return Add(rule, shank,
                 fmt::format("shank {} is {:.4g} wide where {} {} is only {:.4g}", named(shank),
                             2 * inside, outer_name, named(outer), 2 * outside));
    }
  }

  const CheckedFile& file_;
  Findings& findings_;
  double tolerance_;
  std::vector<Part> parts_;
  double slack_ = 0;
};

void check_depth_of_cut(tdbTool& tool, const CheckedFile& file, Findings& findings) {
  const tdbToolCutter* cutter = tool.GetCutter(0);
  if (tool.IsTurningTool() || cutter == nullptr || !tool.GetCutCond().GetVerifyAp()) return;
  const double unit = tool.GetUnitOfMeasurement() == 0 ? 1 : kMillimetresPerInch;
  const double length = cutter->GetLength() * unit;
  const double depth = tool.GetCutCond().GetAp();
  if (length <= 0 || depth <= length * (1 + kSlack)) return;
  findings.Add(rule::kDepth, file.Path(), file.LineOf("<AP>"),
               fmt::format("the depth of cut {} mm is above the cutting length {} mm",
                           shown_number(depth), shown_number(length)));
}

}  // namespace

void check_assembly(tdbTool& tool, const std::vector<Body>& bodies, const CheckedFile& file,
                    Findings& findings) {
  if (tool.GetCutterCount() == 0) {
    findings.Add(rule::kNoCutter, file.Path(), 0, "the tool has no cutter");
  }
  Assembly(bodies, fine_tolerance(tool), file, findings).Check();
  check_depth_of_cut(tool, file, findings);
}

}  // namespace tooldb

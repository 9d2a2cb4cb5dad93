#include <fmt/format.h>

#include <algorithm>

#include "apps/bodies.h"
#include "apps/checks/check_item.h"
#include "apps/checks/check_rules.h"
#include "apps/checks/contour_crossing.h"
#include "apps/text_rules.h"
#include "apps/tool_folder.h"
#include "apps/tree_items.h"
#include "tooldb/tool.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

std::string name_attribute(const tdbItem& item) { return "NAME=\"" + item.GetName() + '"'; }

std::string named(const tdbItem& item) {
  return fmt::format("{} '{}'", class_name(item), item.GetName());
}

// Where a text stands in the file: its beginning is looked for, since the rest may be escaped.
std::size_t line_of_text(const CheckedFile& file, const std::string& text) {
  const auto end = text.find_first_of("<&\"\n\t");
  const std::string head = text.substr(0, end);
  return head.size() < 3 ? 0 : file.LineOf(head);
}

void check_texts(tdbCompositeItem& root, const CheckedFile& file, Findings& findings) {
  for (const HeldText& text : held_texts(root)) {
    const std::string problem = text_problem(text.value, text.one_line);
    if (problem.empty()) continue;
    findings.Add(rule::kText, file.Path(), line_of_text(file, text.value),
                 text.where + ": " + problem);
  }
}

void check_parameter_names(tdbCompositeItem& root, const CheckedFile& file, Findings& findings) {
  for (const auto& problem : parameter_name_problems(root)) {
    findings.Add(rule::kParameterName, file.Path(), 0, problem);
  }
}

void check_references(tdbCompositeItem& root, const CheckedFile& file, Findings& findings) {
  for (const tdbError& error : root.GetErrs()) {
    const bool is_component = error.code == kComponentNotFound;
    findings.Add(is_component ? rule::kComponent : rule::kReference, file.Path(),
                 line_in(error.message), error.message);
  }
}

void check_model(const tdbItem& item, const CheckedFile& file, Findings& findings) {
  const std::string path = item.GetShapeFilePath();
  if (path.empty() || tdbFileUtil::file_exists(path)) return;
  findings.Add(rule::kModel, file.Path(), file.LineOf(name_attribute(item)),
               fmt::format("{}: there is no model file '{}'", named(item), path));
}

void check_outline(const Body& body, const CheckedFile& file, Findings& findings) {
  const auto add = [&](const Findings::Rule& rule, std::string message) {
    findings.Add(rule, file.Path(), file.LineOf(name_attribute(*body.item)), std::move(message));
  };
  if (!body.refusal.empty()) add(rule::kOutline, named(*body.item) + ": " + body.refusal);
  for (const Contour& contour : body.contours) {
    const auto crossing = contour_crossing(contour);
    if (!crossing) continue;
    add(rule::kCrossing, fmt::format("{}: the outline crosses itself near {:.6g}, {:.6g}",
                                     named(*body.item), crossing->x, crossing->y));
  }
}

bool has_missing_model(const tdbItem& item) {
  const std::string path = item.GetShapeFilePath();
  return !path.empty() && !tdbFileUtil::file_exists(path);
}

}  // namespace

std::size_t CheckedFile::LineOf(std::string_view text) const {
  if (!bytes_) bytes_ = file_bytes(path_);
  const auto at = bytes_->find(text);
  if (text.empty() || at == std::string::npos) return 0;
  return 1 + static_cast<std::size_t>(
                 std::ranges::count(std::string_view(*bytes_).substr(0, at), '\n'));
}

void check_contents(tdbCompositeItem& root, const std::vector<Body>& bodies,
                    const CheckedFile& file, Findings& findings) {
  check_texts(root, file, findings);
  check_parameter_names(root, file, findings);
  check_references(root, file, findings);
  for (const TreeItem& entry : items_below(root)) check_model(*entry.item, file, findings);
  for (const Body& body : bodies) {
    const bool is_known = has_missing_model(*body.item);
    // What belongs to a library component is reported with the component.
    const bool is_elsewhere = body.item->IsComponent() && !root.IsComponent();
    if (!is_known && !is_elsewhere) check_outline(body, file, findings);
  }
}

}  // namespace tooldb

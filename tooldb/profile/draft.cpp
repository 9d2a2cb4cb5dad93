#include "tooldb/profile/draft.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>
#include <utility>

#include "geom/number_text.h"
#include "tooldb/model/text.h"
#include "tooldb/profile/parameter_ranges.h"

namespace tooldb {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
// What counts as 0 in a parameter.
constexpr double kZero = 1e-6;
// Six printed digits of two lengths must not make one exceed the other.
constexpr double kSlack = 1e-5;

bool is_number(const ParameterRow& row) { return row.kind != tdbDimension::Kind::kText; }

bool is_in(double value, const Range& range) {
  const bool above = value > range.low || (range.low_allowed && value == range.low);
  const bool below = value < range.high || (range.high_allowed && value == range.high);
  return above && below;
}

bool suits(double value, const ParameterRow& row) {
  const bool whole = row.kind != tdbDimension::Kind::kChoice || std::floor(value) == value;
  return whole && is_in(value, row.range);
}

// The text of a parameter that is set: not null and not blank.
const char* set_text(const tdbItem& item, std::string_view name) {
  const char* text = item.GetParam(std::string(name).c_str(), nullptr);
  return text == nullptr || trimmed(text).empty() ? nullptr : text;
}

}  // namespace

bool is_zero(double number) { return std::abs(number) <= kZero; }

std::optional<double> parameter_number(std::string_view text) {
  const auto number = whole_number(text);
  if (!number || std::abs(*number) > kLargestParameter) return std::nullopt;
  return is_zero(*number) ? 0 : *number;
}

bool at_most(double a, double b) { return a <= b + kSlack * std::max(1.0, b); }

Draft::Draft(const tdbItem& item, const BodyType& type) : item_(&item) {
  const auto rows = type.Parameters();
  dimensions_.reserve(rows.size());
  for (const ParameterRow& row : rows) Read(row);
}

void Draft::Read(const ParameterRow& row) {
  const char* text = set_text(*item_, row.name);
  const std::string_view used = text == nullptr ? row.standard : text;
  const double number = is_number(row) ? parameter_number(used).value_or(kNaN) : kNaN;
  dimensions_.push_back({&row, text, number});
  if (!is_number(row) || used.empty() || row.range.rule.empty()) return;
  if (std::isnan(number)) {
    Refuse(row.name, "\"" + std::string(used) + "\" is not a number up to 1e6");
  } else if (!suits(number, row)) {
    Refuse(row.name, std::string(row.range.rule) + ", not " + general_text(number));
  }
}

const Draft::Dimension& Draft::Find(std::string_view name) const {
  const auto found =
      std::ranges::find(dimensions_, name, [](const Dimension& d) { return d.row->name; });
  assert(found != dimensions_.end());
  return *found;
}

Draft::Dimension& Draft::Find(std::string_view name) {
  return dimensions_[static_cast<std::size_t>(&std::as_const(*this).Find(name) -
                                              dimensions_.data())];
}

double Draft::operator[](std::string_view name) const { return Find(name).value; }

std::string_view Draft::Text(std::string_view name) const {
  const Dimension& dimension = Find(name);
  return dimension.text == nullptr ? dimension.row->standard : dimension.text;
}

double Draft::Derived(std::string_view name, double value) {
  Dimension& dimension = Find(name);
  if (dimension.text == nullptr) dimension.value = value;
  return dimension.value;
}

void Draft::Resolve(std::string_view name, double value) { Find(name).value = value; }

std::vector<tdbDimension> Draft::Dimensions() const {
  std::vector<tdbDimension> dimensions;
  dimensions.reserve(dimensions_.size());
  for (const auto& [row, text, value] : dimensions_) {
    dimensions.push_back({std::string(row->name), std::string(row->meaning), row->kind,
                          text == nullptr ? "" : text, value});
  }
  return dimensions;
}

void Draft::Refuse(std::string_view parameter, std::string_view reason) {
  if (IsRefused()) return;
  outline_.refusal.append(parameter);
  if (!parameter.empty()) outline_.refusal += ' ';
  outline_.refusal.append(reason);
}

double Draft::AtMost(double value, double limit, std::string_view parameter,
                     std::string_view reason) {
  if (!at_most(value, limit)) Refuse(parameter, reason);
  return std::min(value, limit);
}

void Draft::Positive(double value, std::string_view parameter, std::string_view reason) {
  if (!(value > kZero)) Refuse(parameter, reason);
}

void Draft::Corners(std::span<const SharpCorner> corners) {
  if (IsRefused()) return;
  auto segments = round_corners(corners);
  if (!segments) {
    Refuse("FILLET", "does not fit between its neighbours");
    return;
  }
  Segments(*std::move(segments));
}

void Draft::Segments(std::vector<ContourSegment> segments) {
  outline_.segments = std::move(segments);
}

void Draft::Line(Vec2 to) {
  if (is_zero(distance(at_, to))) return;
  outline_.segments.push_back({at_, to, {}, SegmentKind::kLine});
  at_ = to;
}

void Draft::Arc(Vec2 to, Vec2 center, SegmentKind direction) {
  outline_.segments.push_back({at_, to, center, direction});
  at_ = to;
}

void Draft::Shift(double dy) {
  for (ContourSegment& segment : outline_.segments) {
    segment.start.y += dy;
    segment.end.y += dy;
    segment.center.y += dy;
  }
  outline_.cuts.low += dy;
  outline_.cuts.high += dy;
}

Outline Draft::Take() { return std::move(outline_); }

}  // namespace tooldb

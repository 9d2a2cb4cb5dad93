#pragma once

#include <initializer_list>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "geom/contour_segments.h"
#include "tooldb/item.h"
#include "tooldb/profile/body_types.h"

/// @file
/// The making of an outline from the parameters of an item.

namespace tooldb {

/// The part of an outline that cuts, along the axis; all of it unless said otherwise.
struct CutBand {
  double low = -std::numeric_limits<double>::infinity();
  double high = std::numeric_limits<double>::infinity();
};

/// The outline of a body, or why there is none. An open one runs from the axis out, up and back.
struct Outline {
  std::vector<ContourSegment> segments;
  CutBand cuts;
  std::string refusal;  ///< for people: the parameter and the reason; empty when it stands

  bool Stands() const { return refusal.empty(); }
};

/// The number that a parameter is: its whole text, within the limits of a parameter. What is so
/// small that it must come of rounding is 0.
/// @return nothing for any other text
std::optional<double> parameter_number(std::string_view text);

/// Whether a number is what rounding leaves of 0.
bool is_zero(double number);

/// `a` <= `b` between lengths, allowing for the rounding of six printed digits.
bool at_most(double a, double b);

/// An outline in the making: the dimensions it is made of, and what is drawn so far. Once it is
/// refused, the first refusal stays, and what is drawn does not count.
class Draft {
 public:
  /// Reads the parameters of `item` that `type` names; one that is no number, or out of its range,
  /// refuses the outline.
  Draft(const tdbItem& item, const BodyType& type);

  /// @name Dimensions
  /// @{
  const tdbItem& Item() const { return *item_; }
  /// A parameter of the type, or its default.
  double operator[](std::string_view name) const;
  double Half(std::string_view name) const { return (*this)[name] / 2; }
  /// A parameter that is a text, or its default.
  std::string_view Text(std::string_view name) const;
  /// Gives a parameter that is not set its default, and returns what it then is.
  double Derived(std::string_view name, double value);
  /// Sets what a parameter amounts to.
  void Resolve(std::string_view name, double value);
  bool IsSet(std::string_view name) const { return Find(name).text != nullptr; }
  std::vector<tdbDimension> Dimensions() const;
  /// @}

  /// @name Conditions
  /// @{
  bool IsRefused() const { return !outline_.Stands(); }
  void Refuse(std::string_view parameter, std::string_view reason);
  /// `value`, or `limit` when it exceeds that by rounding only; more refuses the outline.
  double AtMost(double value, double limit, std::string_view parameter, std::string_view reason);
  /// Refuses the outline unless `value` is above 0 by more than rounding.
  void Positive(double value, std::string_view parameter, std::string_view reason);
  /// @}

  /// @name Drawing
  /// @{
  /// The whole outline: through `corners`, rounded.
  void Corners(std::span<const SharpCorner> corners);
  void Corners(std::initializer_list<SharpCorner> corners) {
    Corners(std::span(corners.begin(), corners.size()));
  }
  /// A line or arc from where the last stroke ended, at first from (0, 0). A line of no length is
  /// left out.
  void Line(Vec2 to);
  void Arc(Vec2 to, Vec2 center, SegmentKind direction);
  /// The whole outline.
  void Segments(std::vector<ContourSegment> segments);
  void Cuts(double low, double high) { outline_.cuts = {low, high}; }
  /// Moves all that is drawn along the axis.
  void Shift(double dy);
  /// @}

  /// The outline, or its refusal.
  Outline Take();

 private:
  struct Dimension {
    const ParameterRow* row;
    const char* text;  // of the item; null when it is not set
    double value;
  };

  void Read(const ParameterRow& row);
  const Dimension& Find(std::string_view name) const;
  Dimension& Find(std::string_view name);

  const tdbItem* item_;
  std::vector<Dimension> dimensions_;
  Outline outline_;
  Vec2 at_;
};

}  // namespace tooldb

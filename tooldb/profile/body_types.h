#pragma once

#include <array>
#include <span>
#include <string_view>

#include "tooldb/item.h"
#include "tooldb/profile.h"

/// @file
/// The kinds of cutter, shank and holder that are made from parameters: per kind its parameters,
/// their defaults, and the function that draws its outline.

namespace tooldb {

class Draft;

/// The numbers that a parameter may have.
struct Range {
  double low;
  double high;
  bool low_allowed;
  bool high_allowed;
  std::string_view rule;  ///< for people: "must be ..."
};

/// One parameter of a kind of body.
struct ParameterRow {
  std::string_view name;
  std::string_view standard;  ///< the default as it is written; empty: derived from the others
  std::string_view meaning;   ///< for people
  tdbDimension::Kind kind = tdbDimension::Kind::kLength;
  Range range{};
};

/// A kind of body. Its outline is made of `parameters`, those with a name.
struct BodyType {
  int code;
  std::array<ParameterRow, 10> parameters;
  void (*draw)(Draft&);

  std::span<const ParameterRow> Parameters() const {
    std::size_t count = 0;
    while (count < parameters.size() && !parameters[count].name.empty()) ++count;
    return std::span(parameters).first(count);
  }
};

/// Every kind with an outline of its own, in the order of the codes.
std::span<const BodyType> cutter_types();
std::span<const BodyType> shank_types();
std::span<const BodyType> holder_types();

/// The kind of a cutter, shank or holder; null for one that carries its own contour text or a
/// model, and for any other item.
const BodyType* body_type(const tdbItem& item);

}  // namespace tooldb

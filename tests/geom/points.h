#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "geom/number_text.h"
#include "geom/vector_math.h"

/// @file
/// Points from short texts: "x y ; x y ; ..."; a "|" begins the next list of points.

namespace tooldb {

/// The numbers between one semicolon and the next.
inline std::vector<std::vector<double>> number_rows(std::string_view text) {
  std::vector<std::vector<double>> rows;
  std::istringstream words{std::string(text)};
  bool goes_on = false;
  for (std::string word; words >> word; goes_on = word != ";") {
    if (!goes_on) rows.emplace_back();
    if (word != ";") rows.back().push_back(leading_number(word));
  }
  return rows;
}

inline Polyline points(std::string_view text) {
  Polyline line;
  for (const auto& row : number_rows(text)) line.push_back({row.at(0), row.at(1)});
  return line;
}

inline std::vector<Polyline> point_lists(std::string_view text) {
  std::vector<Polyline> lists;
  std::istringstream lines{std::string(text)};
  for (std::string line; std::getline(lines, line, '|');) lists.push_back(points(line));
  return lists;
}

inline void expect_points(const Polyline& line, const Polyline& wanted, double tolerance) {
  ASSERT_EQ(line.size(), wanted.size());
  for (std::size_t i = 0; i < line.size(); ++i) {
    EXPECT_LT(distance(line[i], wanted[i]), tolerance) << i;
  }
}

/// Distance of a point from the nearest place of a polyline of at least two points.
inline double distance_to_line(Vec2 p, const Polyline& line) {
  double best = std::numeric_limits<double>::infinity();
  for (std::size_t i = 1; i < line.size(); ++i) {
    const Vec2 along = line[i] - line[i - 1];
    const double square = dot(along, along);
    const double t = square > 0 ? std::clamp(dot(p - line[i - 1], along) / square, 0.0, 1.0) : 0;
    best = std::min(best, distance(p, line[i - 1] + t * along));
  }
  return best;
}

}  // namespace tooldb

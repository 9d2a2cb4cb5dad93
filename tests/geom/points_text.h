#pragma once

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
  while (!text.empty()) {
    const auto end = text.find('|');
    lists.push_back(points(text.substr(0, end)));
    text = end == text.npos ? "" : text.substr(end + 1);
  }
  return lists;
}

}  // namespace tooldb

#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tooldb/profile/body_types.h"
#include "tooldb/profile/contour_text.h"
#include "tooldb/tool_parts.h"

/// @file
/// Cutters, shanks and holders from short texts.

namespace tooldb::test {

using Contours = std::vector<std::vector<Point2d<double>>>;

/// Contour XML of an outline in short: "x y" a line to there, "ccw x y @ cx cy" an arc, " ; "
/// between; the first pair is where it starts.
inline std::string contour_of(std::string_view outline) {
  std::string xml;
  std::string at;
  std::istringstream steps{std::string(outline)};
  for (std::string step; std::getline(steps, step, ';');) {
    std::string direction, x, y, sign, centre_x, centre_y;
    std::istringstream words(step);
    if (step.find('c') != step.npos) words >> direction;
    words >> x >> y >> sign >> centre_x >> centre_y;
    const std::string ends = "<START>" + at + "</START><END>" + x + " " + y + "</END>";
    if (!direction.empty()) {
      xml += std::string("<ARC DIR=") + (direction == "ccw" ? "\"CCW\" >" : "\"CW\" >") + ends +
             "<CENTER>" + centre_x + " " + centre_y + "</CENTER></ARC>";
    } else if (!at.empty()) {
      xml += "<LINE>" + ends + "</LINE>";
    }
    at = x + " " + y;
  }
  return xml;
}

/// Sets parameters from "NAME=value NAME=value"; a value may hold blanks.
inline void set_params(tdbItem& item, std::string_view text) {
  while (!text.empty()) {
    const auto equals = text.find('=');
    const auto next = text.find('=', equals + 1);
    const auto end = next == text.npos ? text.size() : text.rfind(' ', next);
    const std::string value(text.substr(equals + 1, end - equals - 1));
    item.SetParam(std::string(text.substr(0, equals)).c_str(), value.c_str());
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

/// A cutter, shank or holder; an "insert" is the cutter of a cutting tool of that type.
inline std::shared_ptr<tdbItem> make_body(std::string_view kind, int type,
                                          std::string_view params = "",
                                          std::string_view outline = "") {
  std::shared_ptr<tdbItem> body;
  if (kind == "insert") {
    const auto tool = std::make_shared<tdbCuttingTool>(new tdbToolCutter(7), nullptr, type);
    body = {tool, tool->GetCutter()};
  } else if (kind == "cutter") {
    body = std::make_shared<tdbToolCutter>(type);
  } else if (kind == "shank") {
    body = std::make_shared<tdbToolShank>(type);
  } else {
    body = std::make_shared<tdbToolHolder>(type);
  }
  set_params(*body, params);
  if (!outline.empty()) body->SetProfileXml(contour_of(outline).c_str());
  return body;
}

/// The only contour of an item's profile.
inline Polyline only_contour(tdbItem& item, double tolerance, long mode = 0,
                             kinSceneManager* scene = nullptr) {
  Contours contours;
  EXPECT_TRUE(item.GetProfile(scene, contours, tolerance, mode));
  EXPECT_EQ(contours.size(), 1U);
  return contours.at(0);
}

inline bool build(tdbItem& item) {
  if (auto* shank = dynamic_cast<tdbToolShank*>(&item)) return shank->BuildProfile();
  if (auto* cutter = dynamic_cast<tdbToolCutter*>(&item)) return cutter->BuildProfile(0);
  return dynamic_cast<tdbToolHolder&>(item).BuildProfile(0);
}

/// A body that is made from parameters.
struct AnyBody {
  std::string_view kind;
  int type;

  std::shared_ptr<tdbItem> Make() const { return make_body(kind, type); }
  std::string Name() const { return std::string(kind) + std::to_string(type); }
  /// Extruded rather than turned.
  bool IsFlat() const { return kind == "insert" && type != 25; }
  /// What the outline encloses: the volume of a turned body, the area of a flat one.
  double Measure(const tdbItem& item) const {
    const auto segments = parse_contour(item.GetProfileXml()).value();
    return IsFlat() ? signed_area(segments) : volume_of_revolution(segments);
  }
};

/// Every kind there is.
inline std::vector<AnyBody> all_bodies() {
  std::vector<AnyBody> bodies;
  for (const BodyType& type : cutter_types()) {
    if (type.code != 7) bodies.push_back({"cutter", type.code});
  }
  for (const BodyType& type : shank_types()) bodies.push_back({"shank", type.code});
  for (const BodyType& type : holder_types()) bodies.push_back({"holder", type.code});
  for (int shape = 17; shape <= 25; ++shape) bodies.push_back({"insert", shape});
  return bodies;
}

}  // namespace tooldb::test

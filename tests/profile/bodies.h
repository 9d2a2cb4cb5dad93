#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "tooldb/profile/contour_text.h"
#include "tooldb/tool_parts.h"

/// @file
/// Cutters, shanks and holders from short texts.

namespace tooldb::test {

inline std::unique_ptr<tdbItem> make_body(std::string_view kind, int type) {
  if (kind == "cutter") return std::make_unique<tdbToolCutter>(type);
  if (kind == "shank") return std::make_unique<tdbToolShank>(type);
  return std::make_unique<tdbToolHolder>(type);
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

inline bool build(tdbItem& item) {
  if (auto* cutter = dynamic_cast<tdbToolCutter*>(&item)) return cutter->BuildProfile(0);
  if (auto* shank = dynamic_cast<tdbToolShank*>(&item)) return shank->BuildProfile();
  return dynamic_cast<tdbToolHolder&>(item).BuildProfile(0);
}

/// Contour XML of an outline in short: "x y" a line to there, "ccw x y @ cx cy" an arc, " ; "
/// between; the first pair is where it starts.
inline std::string contour_of(std::string_view outline) {
  std::string xml;
  std::string at;
  while (!outline.empty()) {
    const auto end = outline.find(" ; ");
    std::string_view step = outline.substr(0, end);
    outline = end == outline.npos ? "" : outline.substr(end + 3);
    std::string direction;
    if (step.starts_with("c")) {
      direction = step.starts_with("ccw") ? "CCW" : "CW";
      step.remove_prefix(direction.size() + 1);
    }
    const auto centre = step.find(" @ ");
    const std::string to(step.substr(0, centre));
    const std::string ends = "<START>" + at + "</START><END>" + to + "</END>";
    if (!direction.empty()) {
      xml += "<ARC DIR=\"" + direction + "\" >" + ends + "<CENTER>" +
             std::string(step.substr(centre + 3)) + "</CENTER></ARC>";
    } else if (!at.empty()) {
      xml += "<LINE>" + ends + "</LINE>";
    }
    at = to;
  }
  return xml;
}

}  // namespace tooldb::test

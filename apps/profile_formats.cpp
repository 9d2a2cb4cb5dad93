#include "apps/profile_formats.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "apps/command.h"
#include "apps/tool_json.h"
#include "apps/tree_items.h"

namespace tooldb {
namespace {

std::string csv_cell(const std::string& text) {
  if (text.find_first_of(",\"\n\r") == std::string::npos) return text;
  std::string cell = "\"";
  for (const char c : text) cell.append(c == '"' ? 2 : 1, c);
  return cell + '"';
}

// Twelve digits: more than any machine can cut, and where the sines of all systems are the same.
double rounded(double value) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                 std::chars_format::general, 12);
  std::from_chars(digits.data(), end.ptr, value);
  return value + 0.0;
}

std::string csv_text(const std::vector<Body>& bodies) {
  std::string out = "item,contour,x,y\n";
  for (const Body& body : bodies) {
    for (std::size_t i = 0; i < body.contours.size(); ++i) {
      for (const auto& point : body.contours[i]) {
        out += fmt::format("{},{},{},{}\n", csv_cell(body.item->GetName()), i + 1, rounded(point.x),
                           rounded(point.y));
      }
    }
  }
  return out;
}

nlohmann::ordered_json contours_json(const Body& body) {
  auto contours = nlohmann::ordered_json::array();
  for (const Contour& contour : body.contours) {
    auto& points = contours.emplace_back(nlohmann::ordered_json::array());
    for (const auto& p : contour)
      points.push_back({number_json(rounded(p.x)), number_json(rounded(p.y))});
  }
  return contours;
}

nlohmann::ordered_json matrix_json(const Transformation<double>& m) {
  auto rows = nlohmann::ordered_json::array();
  for (int i = 0; i < 4; ++i) {
    auto& row = rows.emplace_back(nlohmann::ordered_json::array());
    for (int j = 0; j < 4; ++j) row.push_back(number_json(rounded(m(i, j))));
  }
  return rows;
}

std::string all_json(const std::vector<Body>& bodies) {
  auto list = nlohmann::ordered_json::array();
  for (const Body& body : bodies) {
    list.push_back({{"item", body.item->GetName()},
                    {"class", class_name(*body.item)},
                    {"revolved", body.is_revolved},
                    {"placement", matrix_json(body.place)},
                    {"contours", contours_json(body)}});
  }
  return json_text(list);
}

std::string xml_text(const std::vector<Body>& bodies) {
  if (bodies.size() != 1) throw UsageError("--format xml is of one item: name it with --item");
  const std::string text = bodies.front().item->GetProfileXml();
  if (text.empty()) throw Failure("a model file has no lines and arcs; take another --format");
  return text + '\n';
}

// The contours of a body where it stands, and the mirror image of a turned one.
std::string path_data(const Body& body) {
  std::string data;
  for (const double side : {1.0, -1.0}) {
    if (side < 0 && !body.is_revolved) break;
    for (const Contour& contour : body.contours) {
      char command = 'M';
      for (const auto& point : contour) {
        const auto placed = body.Placed({side * point.x, point.y});
        data += fmt::format("{}{:.6g} {:.6g}", command, placed.x + 0.0, -placed.y + 0.0);
        command = 'L';
      }
    }
  }
  return data;
}

std::string svg_text(const std::vector<Body>& bodies) {
  Extent across;
  Extent along{INFINITY, -INFINITY};
  for (const Body& body : bodies) {
    across.high = std::max(across.high, largest_radius(body));
    along.low = std::min(along.low, axial_extent(body).low);
    along.high = std::max(along.high, axial_extent(body).high);
  }
  const double margin = 0.05 * std::max(2 * across.high, along.Size());
  std::string out = fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"{:.6g} {:.6g} {:.6g} {:.6g}\">\n",
      -across.high - margin, -along.high - margin, 2 * (across.high + margin),
      along.Size() + 2 * margin);
  for (const Body& body : bodies) {
    out += fmt::format("<path fill=\"none\" stroke=\"#246\" stroke-width=\"{:.3g}\" d=\"{}\"/>\n",
                       margin / 15, path_data(body));
  }
  return out + "</svg>\n";
}

constexpr auto kFormats = std::to_array<ProfileFormat>(
    {{"csv", csv_text}, {"json", all_json}, {"svg", svg_text}, {"xml", xml_text}});

}  // namespace

const ProfileFormat* find_profile_format(std::string_view name) {
  const auto row = std::ranges::find(kFormats, name, &ProfileFormat::name);
  return row == kFormats.end() ? nullptr : &*row;
}

}  // namespace tooldb

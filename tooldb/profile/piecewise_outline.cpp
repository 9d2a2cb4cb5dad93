#include <optional>

#include "tooldb/model/text.h"
#include "tooldb/profile/cutter_outlines.h"
#include "tooldb/profile/draft.h"

namespace tooldb {
namespace {

constexpr std::size_t kMostPieces = 1000;

struct Piece {
  double height;
  double bottom;  // diameters
  double top;
};

// Cuts the part before `separator` off `text`, or all of it.
std::string_view cut_off(std::string_view& text, std::string_view separators) {
  const auto end = text.find_first_of(separators);
  const std::string_view part = text.substr(0, end);
  text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
  return part;
}

std::optional<double> next_number(std::string_view& text) {
  text = trimmed(text);
  const auto number = parameter_number(cut_off(text, kBlanks));
  return number && *number >= 0 ? number : std::nullopt;
}

std::optional<Piece> parse_piece(std::string_view text) {
  const auto height = next_number(text);
  const auto bottom = next_number(text);
  const auto top = next_number(text);
  if (!height || !bottom || !top || !trimmed(text).empty()) return std::nullopt;
  return Piece{*height, *bottom, *top};
}

// The pieces of "height bottom top; height bottom top; ..."; nothing when the text is not so.
std::optional<std::vector<Piece>> parse_pieces(std::string_view text) {
  std::vector<Piece> pieces;
  for (text = trimmed(text); !text.empty(); text = trimmed(text)) {
    const auto piece = parse_piece(cut_off(text, ";"));
    if (!piece || pieces.size() == kMostPieces) return std::nullopt;
    pieces.push_back(*piece);
  }
  if (pieces.empty()) return std::nullopt;
  return pieces;
}

// Whether the body is on its axis at its very ends only.
bool is_one_body(const std::vector<Piece>& pieces) {
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const auto& [height, bottom, top] = pieces[i];
    if (bottom == 0 && (i > 0 || top == 0)) return false;
    if (top == 0 && i + 1 < pieces.size()) return false;
  }
  return true;
}

}  // namespace

void draw_pieces(Draft& draft) {
  const auto pieces = parse_pieces(draft.Text("PIECE"));
  if (!pieces) {
    draft.Refuse("PIECE", "must be 1 to 1000 times \"height diameter diameter\", with ; between");
    return;
  }
  if (!is_one_body(*pieces)) {
    draft.Refuse("PIECE", "has a diameter of 0 elsewhere than at one end of the tool");
    return;
  }
  double y = 0;
  std::vector<SharpCorner> corners{{{0, 0}}};
  for (const auto& [height, bottom, top] : *pieces) {
    corners.push_back({{bottom / 2, y}});
    y += height;
    corners.push_back({{top / 2, y}});
  }
  draft.Positive(y, "PIECE", "has no height");
  const double length = draft.Derived("LENGTH", y);
  draft.AtMost(y, length, "LENGTH", "is less than the sum of the heights");
  const double r = corners.back().point.x;
  if (length > y) {
    draft.Positive(r, "LENGTH", "continues a diameter of 0");
    corners.push_back({{r, length}});
    y = length;
  }
  corners.push_back({{0, y}});
  draft.Corners(corners);
  draft.Cuts(0, y);
}

}  // namespace tooldb

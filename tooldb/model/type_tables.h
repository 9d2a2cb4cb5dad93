#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <ranges>
#include <string_view>

/// @file
/// The type codes of items and their names in files: one table each, for writer and reader.

namespace tooldb {

/// One type code and a name of it. A code's first row is the name that is written; further rows
/// are names of older files, read only.
struct TypeName {
  int code;
  std::string_view name;
};

/// Kinds of cutting tool. "TURNING_INSERT_ROMBOID" is spelt so in the files.
inline constexpr auto kCuttingToolTypes = std::to_array<TypeName>({
    {0, "MILL_FLATEND"},
    {1, "MILL_LOLLIPOP"},
    {2, "MILL_2DPROFILE"},
    {3, "MILL_BULLNOSE"},
    {4, "MILL_STANDARD"},
    {5, "MILL_CHAMFER1"},
    {6, "MILL_CHAMFER2"},
    {7, "MILL_CORNER_ROUNDING"},
    {8, "MILL_ROUND"},
    {9, "MILL_ROUND_DIAMETER"},
    {10, "DRILL"},
    {11, "PROBE"},
    {12, "DISC"},
    {13, "DISC_DRILL"},
    {14, "DISC2"},
    {15, "TAP"},
    {16, "BORE"},
    {17, "TURNING_INSERT_ROMBOID"},
    {18, "TURNING_INSERT_PARALLELOGRAM"},
    {19, "TURNING_INSERT_T"},
    {20, "TURNING_INSERT_P"},
    {21, "TURNING_INSERT_H"},
    {22, "TURNING_INSERT_O"},
    {23, "TURNING_INSERT_W"},
    {24, "TURNING_INSERT_R"},
    {25, "TURNING_CENTER"},
    {26, "MILL_STANDARD2"},
});

inline constexpr auto kCutterTypes = std::to_array<TypeName>({
    {0, "FLAT"},
    {1, "SPHERIC"},
    {2, "SEMISPHERIC"},
    {3, "STANDARD"},
    {4, "DRILL"},
    {5, "CUSTOM_REVOLUTED"},
    {6, "STL"},
    {7, "TURNING_INSERT"},
    {8, "TURNING_EXTRUDED"},
    {9, "SMUSSO1"},
    {10, "SMUSSO2"},
    {11, "BARENO1"},
    {12, "CORNER_ROUNDING"},
    {13, "TAP"},
    {14, "PIECEWISE"},
    {15, "TURNING_STL"},
    {16, "DISC"},
    {17, "ROUND"},
    {18, "ROUND_DIAMETER"},
    {19, "DISC_DRILL"},
    {22, "DISC2"},
    {23, "STANDARD2"},
    {5, "CUSTOM"},
});

inline constexpr auto kShankTypes = std::to_array<TypeName>({
    {0, "CYLINDER"},
    {1, "CONE"},
    {2, "CUSTOM_REVOLUTED"},
    {3, "STL"},
    {5, "CUSTOM_EXTRUDED"},
    {6, "SMUSSO1"},
    {7, "SMUSSO2"},
    {8, "BARENO1"},
    {9, "CORNER_ROUNDING"},
    {10, "TAP"},
    {11, "DISC"},
    {12, "ROUND"},
    {13, "ROUND_DIAMETER"},
    {14, "DISC_DRILL"},
    {15, "DISC2"},
    {16, "STANDARD2"},
    {2, "CUSTOM"},
});

/// A holder of an older file that stands for a component of the library. Read only.
inline constexpr int kHolderFromLibrary = 100;

inline constexpr auto kHolderTypes = std::to_array<TypeName>({
    {0, "CYLINDER"},
    {1, "CONE"},
    {2, "CUSTOM_REVOLUTED"},
    {3, "STL"},
    {4, "CUSTOM_EXTRUDED"},
    {2, "CUSTOM"},
    {kHolderFromLibrary, "FROMCOMPONENTSLIB"},
});

/// Angle heads are not written; these are the names of older files.
inline constexpr auto kAngleHeadTypes = std::to_array<TypeName>({
    {0, "NONE"},
    {1, "STL"},
    {2, "PARAMETRIC1"},
    {1, "GENERIC"},
});

inline constexpr auto kFixedLinkTypes = std::to_array<TypeName>({{0, "TRANSFORMATION"}});

inline constexpr auto kToolTypes = std::to_array<TypeName>({
    {0, "MILL"},
    {1, "DRILL"},
    {2, "PROBE"},
    {3, "TURNING"},
    {5, "TAP"},
    {6, "DISC"},
    {7, "FACE_MILLING"},
    {8, "SHOULDER_MILLING"},
    {9, "BORE"},
});

/// Kinds of milling cutter of a tool (its subtype).
inline constexpr auto kToolSubTypes = std::to_array<TypeName>({
    {0, "MILL"},
    {7, "FACE_MILLING"},
    {8, "SHOULDER_MILLING"},
});

/// What is written for a code without a row.
inline constexpr std::string_view kOtherRevolved = "CUSTOM_REVOLUTED";
inline constexpr std::string_view kOtherToolType = "PROBE";
inline constexpr std::string_view kOtherSubType = "MILL";

/// The name that is written for `code`, or `otherwise`.
template <std::size_t N>
constexpr std::string_view type_name(const std::array<TypeName, N>& table, int code,
                                     std::string_view otherwise) {
  const auto row = std::ranges::find(table, code, &TypeName::code);
  return row == table.end() ? otherwise : row->name;
}

/// The code of a name, spelt exactly so.
template <std::size_t N>
constexpr std::optional<int> type_code(const std::array<TypeName, N>& table,
                                       std::string_view name) {
  const auto row = std::ranges::find(table, name, &TypeName::name);
  return row == table.end() ? std::nullopt : std::optional(row->code);
}

}  // namespace tooldb

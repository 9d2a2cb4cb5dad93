#include "geom/stl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <fstream>
#include <random>

#include "geom/revolve.h"
#include "tests/geom/mesh_check.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

using Mesh = std::vector<Facet>;
using testing::HasSubstr;

struct Result {
  std::optional<Mesh> mesh;
  std::string error;
};
Result read(std::string_view bytes) {
  MemoryBytes source(bytes);
  Result result;
  result.mesh = read_stl(source, result.error);
  EXPECT_EQ(result.mesh.has_value(), result.error.empty());
  return result;
}

const std::string kFacet =
    "facet normal 0 0 1\n outer loop\n  vertex 0 0 0\n  vertex 1 0 0\n  vertex 0 1 0\n endloop\n"
    "endfacet\n";
const Facet kFacetRead = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string upper(std::string text) {
  for (char& c : text) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return text;
}

struct TextCase {
  const char* name;
  std::string text;
  std::size_t facets;
};
const TextCase kTexts[] = {
    {"Plain", "solid part\n" + kFacet + "endsolid part\n", 1},
    {"NoLineEndAtTheEnd", "solid\n" + kFacet + "endsolid", 1},
    {"WindowsLineEnds", replaced("solid a\n" + kFacet + "endsolid a\n", "\n", "\r\n"), 1},
    {"OldMacLineEnds", replaced("solid a\n" + kFacet + "endsolid a\n", "\n", "\r"), 1},
    {"UpperCase", upper("solid a\n" + kFacet + "endsolid a\n"), 1},
    {"Tabs", replaced("solid a\n" + kFacet + "endsolid a\n", " ", "\t  \t"), 1},
    {"AFacetInOneLine", "solid a\n" + replaced(kFacet, "\n", " ") + "\nendsolid a\n", 1},
    {"SeveralSolids",
     "solid a\n" + kFacet + "endsolid a\n\nsolid b\n" + kFacet + kFacet + "endsolid b\n", 3},
    {"NameLikeAFacet", "solid facet normal 0 0 1\n" + kFacet + "endsolid vertex\n", 1},
    {"NoName", "solid\n" + kFacet + "endsolid\n", 1},
    {"NoEnd", "solid a\n" + kFacet + kFacet, 2},
    {"NoSolid", kFacet + "endsolid\n", 1},
    {"ByteOrderMark", "\xEF\xBB\xBFsolid a\n" + kFacet + "endsolid a\n", 1},
    {"BlanksInFront", " \r\n\tsolid a\n" + kFacet + "endsolid a\n", 1},
    {"NormalThatIsNoNumber",
     "solid a\n" + replaced(kFacet, "normal 0 0 1", "normal -nan(ind) nan inf") + "endsolid a\n",
     1},
    {"NoArea", "solid a\n" + kFacet + replaced(kFacet, "0 1 0", "2 0 0") + "endsolid a\n", 1},
    {"NoFacets", "solid a\nendsolid a\n", 0},
};
class StlText : public testing::TestWithParam<TextCase> {};
TEST_P(StlText, IsRead) {
  const auto [mesh, error] = read(GetParam().text);
  ASSERT_TRUE(mesh) << error;
  ASSERT_EQ(mesh->size(), GetParam().facets);
  for (const Facet& f : *mesh) EXPECT_EQ(std::memcmp(&f, &kFacetRead, sizeof f), 0);
}
INSTANTIATE_TEST_SUITE_P(Files, StlText, testing::ValuesIn(kTexts), row_name<TextCase>);

std::string binary(std::size_t facets, std::uint32_t count, std::string header = "made here") {
  header.resize(80, ' ');
  for (unsigned i = 0; i < 4; ++i) header += static_cast<char>(count >> (8 * i));
  const std::string one = stl_binary(std::span(&kFacetRead, 1)).substr(84);
  for (std::size_t i = 0; i < facets; ++i) header += one;
  return header;
}

const TextCase kBinaries[] = {
    {"Plain", binary(3, 3), 3},
    {"HeaderSaysSolid", binary(3, 3, "solid made by a program"), 3},
    {"HeaderSaysSolidAndTheCountLies", binary(3, 4, "solid"), 3},
    {"CountTooLarge", binary(3, 0xFFFFFFFFU), 3},
    {"CountTooSmall", binary(3, 1), 3},
    {"NoCount", binary(3, 0), 3},
    {"BytesAfterTheLastFacet", binary(3, 3) + "extra", 3},
    {"NoFacets", binary(0, 0), 0},
    {"NoArea",
     [] {
       const Facet flat{{1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {}};
       return stl_binary(Mesh{kFacetRead, flat, kFacetRead});
     }(),
     2},
};
class StlBinary : public testing::TestWithParam<TextCase> {};
TEST_P(StlBinary, IsRead) {
  const auto [mesh, error] = read(GetParam().text);
  ASSERT_TRUE(mesh) << error;
  ASSERT_EQ(mesh->size(), GetParam().facets);
  for (const Facet& f : *mesh) EXPECT_EQ(std::memcmp(&f, &kFacetRead, sizeof f), 0);
}
INSTANTIATE_TEST_SUITE_P(Files, StlBinary, testing::ValuesIn(kBinaries), row_name<TextCase>);

std::string with_float(std::string bytes, std::size_t at, float value) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  for (unsigned i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(bits >> (8 * i));
  return bytes;
}

struct BrokenCase {
  const char* name;
  std::string bytes;
  const char* error;
};
const BrokenCase kBroken[] = {
    {"Empty", "", "the file is empty"},
    {"Short", "made here", "too short for a binary STL file"},
    {"Misspelt", "solid a\n" + replaced(kFacet, "vertex 1", "vertx 1"),
     "line 5: 'vertx' where vertex should be"},
    {"FourCorners", "solid a\n" + replaced(kFacet, "endloop", "vertex 1 1 0\n endloop"),
     "line 7: 'vertex' where endloop should be"},
    {"WindowsLines", replaced("solid a\n" + replaced(kFacet, "outer", "inner"), "\n", "\r\n"),
     "line 3: 'inner' where outer should be"},
    {"NoNumber", "solid a\n" + replaced(kFacet, "0 1 0", "0 one 0"),
     "line 6: 'one' where a number should be"},
    {"DecimalComma", "solid a\n" + replaced(kFacet, "0 1 0", "0 1,5 0"),
     "line 6: '1,5' where a number should be"},
    {"NotANumber", "solid a\n" + replaced(kFacet, "0 1 0", "0 nan 0"),
     "line 6: 'nan' where a number should be"},
    {"TooLarge", "solid a\n" + replaced(kFacet, "0 1 0", "0 1e999 0"),
     "line 6: '1e999' where a finite number should be"},
    {"WordsAfterTheFacets", "solid a\n" + kFacet + "color 1 2 3\n",
     "line 9: 'color' where 'facet' or 'endsolid' should be"},
    {"OneLine", replaced("solid a\n" + kFacet, "\n", " "), "neither a facet nor an 'endsolid'"},
    {"BinaryNotFinite", with_float(binary(3, 3), 84 + 50 + 16, NAN),
     "facet 2 of 3, at byte 134, has a corner that is no finite number"},
    {"BinaryInfinite", with_float(binary(3, 3), 84 + 100 + 44, INFINITY),
     "facet 3 of 3, at byte 184, has"},
    {"BinaryCutOff", binary(3, 4) + "more",
     "facet 4 of 4, at byte 234, is cut off by the end of the file"},
};
class StlBroken : public testing::TestWithParam<BrokenCase> {};
TEST_P(StlBroken, IsRefusedWithItsPlace) {
  const auto [mesh, error] = read(GetParam().bytes);
  EXPECT_FALSE(mesh);
  EXPECT_THAT(error, HasSubstr(GetParam().error));
}
INSTANTIATE_TEST_SUITE_P(Files, StlBroken, testing::ValuesIn(kBroken), row_name<BrokenCase>);

// Cut after any byte, a file gives the facets that are whole or an error, never a facet of its own.
TEST(StlCutOff, TextNeverGivesHalfAFacet) {
  const std::string text = "solid a\n" + kFacet + kFacet + "endsolid a\n";
  const std::size_t first = text.find("endfacet") + 8;
  const std::size_t second = text.rfind("endfacet") + 8;
  for (std::size_t length = 0; length < text.size(); ++length) {
    const auto [mesh, error] = read(text.substr(0, length));
    const bool between = (length >= first && length <= first + 1) || length == second ||
                         length == second + 1 || length >= text.find("endsolid") + 8;
    EXPECT_EQ(mesh.has_value(), between) << length << ": " << error;
    if (mesh) {
      EXPECT_EQ(mesh->size(), length >= second ? 2U : 1U) << length;
    }
  }
}
TEST(StlCutOff, BinaryGivesWholeFacetsOrAnError) {
  const std::string bytes = binary(4, 4);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const auto [mesh, error] = read(bytes.substr(0, length));
    EXPECT_EQ(mesh.has_value(), length >= 84 && (length - 84) % 50 == 0) << length;
    if (mesh) {
      EXPECT_EQ(mesh->size(), (length - 84) / 50);
    }
  }
}

Mesh random_mesh(std::size_t count) {
  std::mt19937_64 random(9);
  std::uniform_real_distribution<double> u(-100, 100);
  Mesh mesh(count);
  for (Facet& f : mesh) {
    for (Vec3* p : {&f.a, &f.b, &f.c}) *p = {u(random), u(random) * 1e-8, u(random)};
    f.n = facet_normal(f.a, f.b, f.c);
  }
  return mesh;
}

// Long enough for several blocks, and their cuts anywhere in a facet.
TEST(StlRoundTrip, TextKeepsEveryBit) {
  const Mesh mesh = random_mesh(60000);
  const std::string text = stl_text(mesh, "two\nlines");
  EXPECT_THAT(text.substr(0, 40), testing::StartsWith("solid two lines\nfacet normal "));
  const auto [many, error] = read(text);
  ASSERT_TRUE(many) << error;
  ASSERT_EQ(many->size(), mesh.size());
  EXPECT_EQ(std::memcmp(many->data(), mesh.data(), mesh.size() * sizeof(Facet)), 0);
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  EXPECT_EQ(std::memcmp(read(text).mesh->data(), mesh.data(), mesh.size() * sizeof(Facet)), 0);
}

TEST(StlRoundTrip, AnErrorFarIntoAFileHasItsLine) {
  std::string text = stl_text(random_mesh(60000), "far");
  const std::size_t facet = text.find("endloop", text.size() - 3000);
  text.replace(facet, 7, "endloo!");
  const auto lines = std::count(text.begin(), text.begin() + static_cast<long>(facet), '\n');
  EXPECT_THAT(read(text).error, HasSubstr("line " + std::to_string(lines + 1) + ": 'endloo!'"));
}

std::array<float, 3> as_floats(const Vec3& v) {
  return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

TEST(StlRoundTrip, BinaryKeepsFloats) {
  Mesh mesh;
  ASSERT_TRUE(revolve(Polyline{{0, 0}, {8, 4}, {8, 90}, {0, 90}}, {1e-4}, mesh));
  const std::string bytes = stl_binary(mesh);
  EXPECT_EQ(bytes.size(), 84 + 50 * mesh.size());
  const auto [read_back, error] = read(bytes);
  ASSERT_TRUE(read_back) << error;
  ASSERT_EQ(read_back->size(), mesh.size());
  for (std::size_t i = 0; i < mesh.size(); ++i) {
    ASSERT_EQ(as_floats((*read_back)[i].a), as_floats(mesh[i].a)) << i;
    ASSERT_EQ(as_floats((*read_back)[i].b), as_floats(mesh[i].b)) << i;
    ASSERT_EQ(as_floats((*read_back)[i].c), as_floats(mesh[i].c)) << i;
  }
  const MeshCheck check = check_mesh(*read_back);
  EXPECT_EQ(check.open_edges, 0U);
  EXPECT_EQ(check.euler, 2);
  EXPECT_NEAR(check.volume, signed_volume(mesh), 0.01);
}

// Figures of another program.
TEST(StlRealFile, EndMillIsReadWhole) {
  std::string bytes(335284, '\0');
  std::ifstream file(TOOLDB_TEST_DATA "/stl/end-mill-binary.stl", std::ios::binary);
  ASSERT_TRUE(file.read(bytes.data(), static_cast<std::streamsize>(bytes.size())));
  const auto [mesh, error] = read(bytes);
  ASSERT_TRUE(mesh) << error;
  EXPECT_EQ(mesh->size(), 6704U);
  EXPECT_NEAR(signed_volume(*mesh), 1688.886597, 0.01);
}

}  // namespace
}  // namespace tooldb

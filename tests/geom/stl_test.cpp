#include "geom/stl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <fstream>

#include "tests/geom/meshes.h"
#include "tests/geom/row_name.h"

namespace tooldb {
namespace {

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
const std::string kSolid = "solid a\n" + kFacet + "endsolid a\n";
const Facet kFacetRead = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

std::string with_word(std::string bytes, std::size_t at, std::uint32_t word) {
  for (unsigned i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(word >> (8 * i));
  return bytes;
}

std::string binary(std::size_t facets, std::uint32_t count, std::string header = "made here") {
  header.resize(84, ' ');
  const std::string one = stl_binary(std::span(&kFacetRead, 1)).substr(84);
  for (std::size_t i = 0; i < facets; ++i) header += one;
  return with_word(header, 80, count);
}

// A binary file of three facets, one number of it replaced.
std::string with_float(std::size_t at, float value) {
  return with_word(binary(3, 3), at, std::bit_cast<std::uint32_t>(value));
}

struct FileCase {
  std::string_view name;
  std::string bytes;
  std::size_t facets;
  std::string_view error = "";  // part of it; empty: the file is read
};
const FileCase kFiles[] = {
    {"WindowsLineEnds", replaced(kSolid, "\n", "\r\n"), 1},
    {"OldMacLineEnds", replaced(kSolid, "\n", "\r"), 1},
    {"AnyCase",
     "SOLID a\nFACET Normal 0 0 1 OUTER Loop Vertex 0 0 0 VERTEX 1 0 0 vertex 0 1 0 EndLoop "
     "ENDFACET\nEndSolid",
     1},
    {"AFacetInOneLine", "solid a\n" + replaced(kFacet, "\n", " ") + "\nendsolid a\n", 1},
    {"SeveralSolids", kSolid + "\nsolid b\n" + kFacet + kFacet + "endsolid b\n", 3},
    {"NameLikeAFacet", "solid facet normal 0 0 1\n" + kFacet + "endsolid vertex\n", 1},
    {"NoSolid", kFacet + "endsolid\n", 1},
    {"ByteOrderMark", "\xEF\xBB\xBF" + kSolid, 1},
    {"BlanksInFront", " \r\n\t" + kSolid, 1},
    {"NormalThatIsNoNumber", replaced(kSolid, "normal 0 0 1", "normal -nan(ind) nan inf"), 1},
    {"NoArea", kSolid + replaced(kFacet, "0 1 0", "2 0 0"), 1},
    {"NoFacets", "solid a\nendsolid a\n", 0},
    {"BinaryHeaderSaysSolid", binary(3, 3, "solid made by a program"), 3},
    {"BinaryHeaderSaysSolidAndTheCountLies", binary(3, 4, "solid"), 3},
    {"BinaryCountTooSmall", binary(3, 1), 3},
    {"BinaryBytesAfterTheLastFacet", binary(3, 3) + "extra", 3},
    {"BinaryNoArea", with_float(84 + 24, 0), 2},
    {"Empty", "", 0, "the file is empty"},
    {"Short", "made here", 0, "too short for a binary STL file"},
    {"Misspelt", replaced(kSolid, "vertex 1", "vertx 1"), 0,
     "line 5: 'vertx' where vertex should be"},
    {"FourCorners", replaced(kSolid, "endloop", "vertex 1 1 0\n endloop"), 0,
     "line 7: 'vertex' where endloop should be"},
    {"WindowsLines", replaced(replaced(kSolid, "outer", "inner"), "\n", "\r\n"), 0,
     "line 3: 'inner' where outer should be"},
    {"NoNumber", replaced(kSolid, "0 1 0", "0 one 0"), 0, "line 6: 'one' where a number should be"},
    {"TooLarge", replaced(kSolid, "0 1 0", "0 1e999 0"), 0,
     "line 6: '1e999' where a finite number"},
    {"WordsAfterTheFacets", "solid a\n" + kFacet + "color 1 2 3\n", 0,
     "line 9: 'color' where 'facet' or 'endsolid' should be"},
    {"OneLine", replaced(kSolid, "\n", " "), 0, "neither a facet nor an 'endsolid'"},
    {"BinaryNotFinite", with_float(84 + 50 + 16, NAN), 0,
     "facet 2 of 3, at byte 134, has a corner that is no finite number"},
    {"BinaryCutOff", binary(3, 4) + "more", 0,
     "facet 4 of 4, at byte 234, is cut off by the end of the file"},
};
class StlFile : public testing::TestWithParam<FileCase> {};
INSTANTIATE_TEST_SUITE_P(Files, StlFile, testing::ValuesIn(kFiles), row_name<FileCase>);

TEST_P(StlFile, IsReadOrRefusedWithItsPlace) {
  const auto [mesh, error] = read(GetParam().bytes);
  EXPECT_THAT(error, HasSubstr(std::string(GetParam().error)));
  ASSERT_EQ(mesh.has_value(), GetParam().error.empty()) << error;
  ASSERT_EQ(mesh.value_or(Mesh()).size(), GetParam().facets);
  for (const Facet& f : mesh.value_or(Mesh())) {
    EXPECT_EQ(std::memcmp(&f, &kFacetRead, sizeof f), 0);
  }
}

// Cut after any byte, a file gives the facets that are whole or an error, never a facet of its own.
TEST(StlCutOff, GivesWholeFacetsOrAnError) {
  const auto facets_in = [](const std::string& bytes) {
    const auto mesh = read(bytes).mesh;
    return mesh ? static_cast<long>(mesh->size()) : -1;
  };
  const std::string text = "solid a\n" + kFacet + kFacet + "endsolid a\n";
  const std::size_t first = text.find("endfacet") + 8;
  const std::size_t second = text.rfind("endfacet") + 8;
  for (std::size_t length = 0; length < text.size(); ++length) {
    const bool one = length == first || length == first + 1;
    const bool two =
        length == second || length == second + 1 || length >= text.find("endsolid") + 8;
    EXPECT_EQ(facets_in(text.substr(0, length)), one ? 1 : two ? 2 : -1) << length;
  }
  const std::string bytes = binary(4, 4);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    const bool whole = length >= 84 && (length - 84) % 50 == 0;
    EXPECT_EQ(facets_in(bytes.substr(0, length)), whole ? static_cast<long>(length - 84) / 50 : -1);
  }
}

// Long enough for several blocks, and their cuts anywhere in a facet.
TEST(StlRoundTrip, TextKeepsEveryBit) {
  Mesh mesh = soup(60000, 3, 9);
  for (Facet& f : mesh) {
    for (Vec3* p : {&f.a, &f.b, &f.c}) p->y *= 1e-8;
    f.n = facet_normal(f.a, f.b, f.c);
  }
  std::string text = stl_text(mesh, "two\nlines");
  EXPECT_THAT(text.substr(0, 40), testing::StartsWith("solid two lines\nfacet normal "));
  const auto [read_back, error] = read(text);
  ASSERT_TRUE(read_back) << error;
  ASSERT_EQ(read_back->size(), mesh.size());
  EXPECT_EQ(std::memcmp(read_back->data(), mesh.data(), mesh.size() * sizeof(Facet)), 0);
  // An error far into the file has its line.
  const std::size_t word = text.find("endloop", text.size() - 3000);
  text.replace(word, 7, "endloo!");
  const auto lines = std::count(text.begin(), text.begin() + static_cast<long>(word), '\n');
  EXPECT_THAT(read(text).error, HasSubstr("line " + std::to_string(lines + 1) + ": 'endloo!'"));
}

// Figures of another program.
TEST(StlRealFile, EndMillIsReadWhole) {
  std::string bytes(335284, '\0');
  std::ifstream file(TOOLDB_TEST_DATA "/stl/end-mill-binary.stl", std::ios::binary);
  ASSERT_TRUE(file.read(bytes.data(), static_cast<std::streamsize>(bytes.size())));
  const auto [mesh, error] = read(bytes);
  ASSERT_TRUE(mesh) << error;
  EXPECT_EQ(mesh->size(), 6704U);
  EXPECT_NEAR(check_mesh(*mesh).volume, 1688.886597, 0.01);
  EXPECT_EQ(stl_binary(*mesh).substr(80, 4), bytes.substr(80, 4));  // the number of facets
}

}  // namespace
}  // namespace tooldb

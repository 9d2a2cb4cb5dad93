// Documents byte for byte. TOOLDB_RENEW_GOLDEN=1 in the environment writes them anew; read the
// difference before you keep it.

#include <clocale>
#include <cstdlib>
#include <fstream>
#include <random>

#include "tests/geom/row_name.h"
#include "tests/xml/golden_documents.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

class Golden : public testing::TestWithParam<GoldenDocument> {
 protected:
  void SetUp() override {
    if (std::getenv("TOOLDB_RENEW_GOLDEN") == nullptr) return;
    std::ofstream(golden_path(GetParam().name), std::ios::binary) << GetParam().write();
  }
};

TEST_P(Golden, IsWrittenReadAndWrittenAgain) {
  const std::string kept = golden_bytes(GetParam().name);
  EXPECT_EQ(GetParam().write(), kept);
  EXPECT_EQ(rewritten(GetParam().kind, kept), kept);
}

// Counts what an import of a text gives, and frees it.
template <class Part>
struct Import {
  explicit Import(const std::string& text) {
    std::vector<Part*> parts;
    ok = tdbXmlReader::ImportFromXml(text.c_str(), kGoldenPaths, parts, error, nullptr);
    count = parts.size();
    for (Part* part : parts) delete part;
  }
  bool ok = false;
  std::size_t count = 0;
  tdbError error{0, ""};
};

template <class Part>
void expect_every_cut_is_refused(const std::string& whole) {
  const std::size_t all = Import<Part>(whole).count;
  const std::size_t last = whole.rfind('>');
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const Import<Part> cut(whole.substr(0, length));
    ASSERT_EQ(cut.ok, length > last) << "cut after " << length << " bytes";
    ASSERT_NE(cut.ok, !cut.error.message.empty());
    ASSERT_LE(cut.count, all);
  }
}

TEST_P(Golden, CutAfterAnyByteIsRefused) {
  const bool tools =
      GetParam().kind == DocumentKind::kTool || GetParam().kind == DocumentKind::kTools;
  (tools ? expect_every_cut_is_refused<tdbTool>
         : expect_every_cut_is_refused<tdbToolComponent>)(golden_bytes(GetParam().name));
}

// Bytes changed, doubled and taken out at random: an object or an error, never both or neither.
TEST_P(Golden, RandomEditsGiveAnObjectOrAnError) {
  const std::string whole = golden_bytes(GetParam().name);
  std::mt19937 random(17);
  const auto below = [&random](std::size_t n) { return random() % n; };
  constexpr std::string_view kBytes = "<>&\"'/= \n!-[]?\x80\xFFTOL0";
  for (int round = 0; round < 400; ++round) {
    std::string text = whole;
    for (std::size_t edits = 1 + below(6); edits > 0; --edits) {
      const std::size_t at = below(text.size());
      const std::size_t length = below(40);
      if (edits % 3 == 0) text.erase(at, length);
      if (edits % 3 == 1) text[at] = kBytes[below(kBytes.size())];
      if (edits % 3 == 2) text.insert(at, text.substr(below(text.size()), length));
      if (text.empty()) text = " ";
    }
    tdbError error(0, "");
    const std::unique_ptr<tdbTool> tool(
        tdbXmlReader::ImportToolFromXml(text.c_str(), kGoldenPaths, error, nullptr));
    EXPECT_EQ(tool == nullptr, !error.message.empty());
    const bool says_where =
        error.message.starts_with("line ") || error.message.starts_with("there is no element");
    EXPECT_TRUE(tool == nullptr ? says_where : !xml_of(*tool).empty()) << error.message;
    Import<tdbTool> tools(text);
    Import<tdbToolComponent> components(text);
    EXPECT_NE(tools.ok, !tools.error.message.empty());
    EXPECT_NE(components.ok, !components.error.message.empty());
  }
}

INSTANTIATE_TEST_SUITE_P(Documents, Golden, testing::ValuesIn(kGoldenDocuments),
                         row_name<GoldenDocument>);

// TOOLDB_LOCALES is a folder with de_DE.UTF-8, made when the tests are configured.
const char* set_decimal_comma() {
#if defined(_WIN32)
  return std::setlocale(LC_ALL, "German");
#else
  setenv("LOCPATH", TOOLDB_LOCALES, 1);
  return std::setlocale(LC_ALL, "de_DE.UTF-8");
#endif
}

TEST(GoldenLocale, ADecimalCommaChangesNothing) {
  ASSERT_NE(set_decimal_comma(), nullptr)
      << "no locale in " << TOOLDB_LOCALES << ": install localedef and the sources of locales";
  ASSERT_STREQ(std::localeconv()->decimal_point, ",");
  for (const GoldenDocument& document : kGoldenDocuments) {
    const std::string kept = golden_bytes(document.name);
    EXPECT_EQ(document.write(), kept);
    EXPECT_EQ(rewritten(document.kind, kept), kept);
  }
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace tooldb

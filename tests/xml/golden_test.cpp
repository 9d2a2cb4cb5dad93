// Documents byte for byte. TOOLDB_RENEW_GOLDEN=1 in the environment writes them anew; read the
// difference before you keep it.

#include <clocale>
#include <cstdlib>
#include <fstream>

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

template <class Part>
bool is_imported(const std::string& text) {
  std::vector<Part*> parts;
  tdbError error(0, "");
  const bool ok = tdbXmlReader::ImportFromXml(text.c_str(), kGoldenPaths, parts, error, nullptr);
  for (Part* part : parts) delete part;
  EXPECT_NE(ok, !error.message.empty());
  return ok;
}

template <class Part>
void expect_every_cut_is_refused(const std::string& whole) {
  const std::size_t last = whole.rfind('>');
  for (std::size_t length = 0; length < whole.size(); ++length) {
    ASSERT_EQ(is_imported<Part>(whole.substr(0, length)), length > last) << length << " bytes";
  }
}

TEST_P(Golden, CutAfterAnyByteIsRefused) {
  const bool tools =
      GetParam().kind == DocumentKind::kTool || GetParam().kind == DocumentKind::kTools;
  (tools ? expect_every_cut_is_refused<tdbTool>
         : expect_every_cut_is_refused<tdbToolComponent>)(golden_bytes(GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(Documents, Golden, testing::ValuesIn(kGoldenDocuments),
                         row_name<GoldenDocument>);

TEST(Interference, ReplacesTheText) {
  std::string text = "left over";
  tdbFixedLink(0).WriteInterfSettingsXml(text);
  EXPECT_EQ(text, "INTERF_INH=\"TRUE\" INTERF_TYPE=\"ALLOWED_INTERF\" INTERF_VAL=\"0\"");
}

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

// Documents byte for byte. TOOLDB_RENEW_GOLDEN=1 in the environment writes them anew; read the
// difference before you keep it.

#include "tests/golden.h"

#include <clocale>
#include <cstdlib>

#include "tests/geom/row_name.h"
#include "tests/xml/golden_documents.h"

namespace tooldb {
namespace {

void expect_round_trip(const GoldenDocument& document) {
  const std::string written = document.write();
  EXPECT_TRUE(matches_golden(written, std::string(document.name) + ".xml"));
  EXPECT_EQ(document.rewrite(written), written);
}

class Golden : public testing::TestWithParam<GoldenDocument> {};

TEST_P(Golden, IsWrittenReadAndWrittenAgain) { expect_round_trip(GetParam()); }

TEST_P(Golden, CutAfterAnyByteIsRefused) {
  const std::string whole = GetParam().write();
  for (std::size_t length = 0; length <= whole.rfind('>'); ++length) {
    ASSERT_THROW(GetParam().rewrite(whole.substr(0, length)), tdbError) << length << " bytes";
  }
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
  for (const GoldenDocument& document : kGoldenDocuments) expect_round_trip(document);
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace tooldb

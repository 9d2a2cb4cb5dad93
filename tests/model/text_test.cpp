#include "tooldb/model/text.h"

#include <gtest/gtest.h>

namespace tooldb {
namespace {

TEST(CodeEscape, RoundTrips) {
  constexpr std::pair<std::string_view, std::string_view> kCodes[] = {
      {"", ""},
      {"\\/:*?\"<>|", "{{92}}{{47}}{{58}}{{42}}{{63}}{{34}}{{60}}{{62}}{{124}}"},
      {"{{}}{{a}}{1}", "{{}}{{a}}{1}"},
      {"\xC3\x9F/\xE2\x82\xAC", "\xC3\x9F{{47}}\xE2\x82\xAC"},
  };
  for (const auto& [code, file] : kCodes) {
    EXPECT_EQ(encoded_code(code), file);
    EXPECT_EQ(decoded_code(std::string(file)), code);
  }
}

TEST(CodeEscape, EveryByteRoundTrips) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string code = {'a', static_cast<char>(byte), 'b'};
    const std::string file = encoded_code(code);
    EXPECT_EQ(decoded_code(file), code) << byte;
    EXPECT_EQ(file.find_first_of(kForbiddenInFileNames), std::string::npos) << byte;
  }
}

TEST(CodeEscape, EscapesInACodeAreNotProtected) {
  EXPECT_EQ(encoded_code("A{{47}}B"), encoded_code("A/B"));
  EXPECT_EQ(decoded_code("{{1234}}"), "{{1234}}");
  EXPECT_EQ(decoded_code("{{{47}}}"), "{/}");
}

TEST(Text, CaseAndBlanksAreAscii) {
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    const bool letter = byte >= 'a' && byte <= 'z';
    EXPECT_EQ(upper(c), letter ? static_cast<char>(byte - 32) : c) << byte;
    EXPECT_EQ(lower(upper(c)), byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : c);
  }
  EXPECT_EQ(trimmed(" \t\r\n a b \v\f"), "a b");
  EXPECT_EQ(trimmed(" \n "), "");
  EXPECT_EQ(comparable_code(" d10-\xC3\xA4 "), "D10-\xC3\xA4");
}

}  // namespace
}  // namespace tooldb

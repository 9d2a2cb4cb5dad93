// Documents that are broken, stored otherwise, or too much.

#include <fstream>

#include "tests/geom/row_name.h"
#include "tests/golden.h"
#include "tests/repeated.h"
#include "tests/xml/xml_fixture.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/xml/text_encoding.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

std::string numbered_attributes(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += " a" + std::to_string(i) + "=''";
  return text;
}

struct BrokenCase {
  const char* name;
  std::string text;
  const char* message;  // a part of it
};

const BrokenCase kBroken[] = {
    {"Empty", "", "no element <TOOL>"},
    {"NoMarkup", "a tool", "no element <TOOL>"},
    {"OnlyAComponent", "<TOOLCOMPONENT NAME='a'/>", "no element <TOOL>"},
    {"NotClosed", "\n<TOOL NAME='a'>\n<DESCR>", "line 2: the text ends before <DESCR>"},
    {"RootNotClosed", "<TOOLDB>\n<TOOL NAME='a'/>\n", "line 3: the text ends before </TOOLDB>"},
    {"ValueNotClosed", "<TOOL NAME='a/>", "broken attribute"},
    {"CommentNotClosed", "<TOOL NAME='a'><!-- </TOOL>", "line 1: the comment is not closed"},
    {"CdataNotClosed", "<TOOL><![CDATA[ </TOOL>", "the CDATA section is not closed"},
    {"Attributes", "<TOOL" + numbered_attributes(257) + "/>", "more than 256 attributes"},
    {"ManyAttributes", "<TOOL" + numbered_attributes(300000) + "/>", "more than 256 attributes"},
    {"DeepElements", tool_with(repeated("<HOLDER TYPE='CONE'>", 100000)), "more than 90 deep"},
    {"DeepClosed", tool_with(repeated("<A>", 100000) + repeated("</A>", 100000)), "90 deep"},
    {"DeepTree", tool_with(repeated("<HOLDER TYPE='CONE' NAME='h' PARENT='h'/>", 100000)),
     "more than 100 deep"},
    {"LongName", tool_with("<" + std::string(100000, 'x') + "></y>"), "...> is open"},
};

class Malformed : public testing::TestWithParam<BrokenCase> {};
TEST_P(Malformed, IsRefusedWithLineAndRemedy) {
  const BrokenCase& row = GetParam();
  tdbError error(0, "");
  EXPECT_EQ(tdbXmlReader::ImportToolFromXml(row.text.c_str(), kNoPaths, error, nullptr), nullptr);
  EXPECT_EQ(error.code, 1);
  EXPECT_NE(error.message.find(row.message), std::string::npos) << error.message.substr(0, 300);
  EXPECT_LT(error.message.size(), 400U);
}
INSTANTIATE_TEST_SUITE_P(Texts, Malformed, testing::ValuesIn(kBroken), row_name<BrokenCase>);

// An export with a sound tool behind every fault: what the import brings, and all its errors.
TEST(Recovery, LosesOnlyTheBrokenEntries) {
  const std::string path = TOOLDB_TEST_DATA "/broken.xml";
  std::vector<tdbTool*> tools;
  std::vector<tdbError> errors;
  EXPECT_FALSE(tdbXmlReader::ImportFromFile(path.c_str(), kNoPaths, tools, errors, nullptr));
  std::string told;
  for (const tdbTool* tool : tools) {
    told += tool->GetCode() + '\n';
    delete tool;
  }
  for (const tdbError& error : errors) {
    EXPECT_EQ(error.message.find(path + ": line "), 0U) << error.message;
    told += std::to_string(error.code) + error.message.substr(path.size()) + '\n';
  }
  EXPECT_TRUE(matches_golden(told, "broken.txt"));
}

TEST(Recovery, OfComponentsGoesOnAtTheNextWithoutAParent) {
  const char* text =
      "<TOOLDB><TOOLCOMPONENT NAME='a' PARENT=\"\"><HOLDER TYPE='?' PARENT='a'>"
      "<TOOLCOMPONENT NAME='inner' PARENT='a'></TOOLCOMPONENT></TOOLCOMPONENT>"
      "<TOOLCOMPONENT NAME='b' PARENT=\"\"></TOOLCOMPONENT></TOOLDB>";
  std::vector<tdbToolComponent*> components;
  tdbError error;
  EXPECT_FALSE(tdbXmlReader::ImportFromXml(text, kNoPaths, components, error, nullptr));
  ASSERT_EQ(components.size(), 1U);
  EXPECT_EQ(components[0]->GetCode(), "b");
  delete components[0];
}

TEST(Recovery, TakesTimeThatIsLinear) {
  // Each of these made a search start over at every tag.
  for (const char* piece : {"<!--", "<TOOL NAME='", "<A b='\"<A b=\"", "<TOOL><A>", "</TOOL>"}) {
    std::vector<tdbTool*> tools;
    tdbError error;
    EXPECT_FALSE(tdbXmlReader::ImportFromXml(repeated(piece, 50000).c_str(), kNoPaths, tools, error,
                                             nullptr));
    EXPECT_TRUE(tools.empty());
  }
}

TEST(XmlReader, MissingArgumentsAndFilesAreErrors) {
  const std::string missing = testing::TempDir() + "/there is none.ktf";
  std::vector<tdbTool*> tools;
  std::vector<tdbError> errors;
  tdbError error(0, "");
  EXPECT_EQ(tdbXmlReader::ReadTool(missing.c_str(), kNoPaths, error, nullptr), nullptr);
  EXPECT_NE(error.message.find(missing), std::string::npos);
  EXPECT_EQ(tdbXmlReader::ReadTool(nullptr, kNoPaths, error, nullptr), nullptr);
  EXPECT_EQ(tdbXmlReader::ImportToolFromXml(nullptr, kNoPaths, error, nullptr), nullptr);
  EXPECT_FALSE(tdbXmlReader::ImportFromXml(nullptr, kNoPaths, tools, error, nullptr));
  EXPECT_FALSE(tdbXmlReader::ImportFromFile(missing.c_str(), kNoPaths, tools, errors, nullptr));
  EXPECT_EQ(errors.size(), 1U);
  EXPECT_FALSE(tdbXmlReader::IsTalvikToolFile(missing.c_str()));
  EXPECT_FALSE(tdbXmlReader::IsTalvikToolFile(nullptr));
}

std::string utf16(std::u16string_view text, bool big) {
  std::string bytes = big ? "\xFE\xFF" : "\xFF\xFE";
  for (const char16_t c : text) {
    const char low = static_cast<char>(c & 0xFF);
    const char high = static_cast<char>(c >> 8);
    bytes += big ? high : low;
    bytes += big ? low : high;
  }
  return bytes;
}

struct EncodingCase {
  const char* name;
  std::string bytes;
  std::string text;
};
const EncodingCase kEncodings[] = {
    {"Utf8", "Fräser \u0905 \uD55C \U0001F527 \U00100000",
     "Fräser \u0905 \uD55C \U0001F527 \U00100000"},
    {"Utf8WithMark", "\xEF\xBB\xBF\xE2\x82\xAC", "€"},
    {"Latin1", "Fr\xE4ser \xD8 5", "Fräser Ø 5"},
    {"Latin1AtTheEnd", "a\xC3", "aÃ"},
    {"OverlongIsLatin1", "\xC0\xAF", "À¯"},
    {"OverlongOfFourIsLatin1", "\xF0\x80\x80\x80", "ð\xC2\x80\xC2\x80\xC2\x80"},
    {"OverlongOfThreeIsLatin1", "\xE0\x80\xAF", "à\xC2\x80¯"},
    {"SurrogateIsLatin1", "\xED\xA0\x80", "í\xC2\xA0\xC2\x80"},
    {"BeyondUnicodeIsLatin1", "\xF4\x90\x80\x80", "ô\xC2\x90\xC2\x80\xC2\x80"},
    {"Utf16Little", utf16(u"Ø 5 – 半 \U0001F527", false), "Ø 5 – 半 🔧"},
    {"Utf16Big", utf16(u"Ø 5 – 半 \U0001F527", true), "Ø 5 – 半 🔧"},
    {"LoneSurrogates", utf16(std::u16string{u'a', 0xD83D, u'b', 0xDC00, 0xFF01, 0xD83D}, false),
     "a\uFFFDb\uFFFD\uFF01\uFFFD"},
    {"ZeroByte", std::string("a\n\0b", 4), "line 2: a zero byte"},
    {"HalfAUnit", utf16(u"ab", false) + "c", "ab\uFFFD"},
};

class Encoding : public testing::TestWithParam<EncodingCase> {};
TEST_P(Encoding, BecomesUtf8) {
  std::string storage;
  try {
    EXPECT_EQ(document_text(GetParam().bytes, storage), GetParam().text);
  } catch (const tdbError& error) {
    EXPECT_EQ(error.message.substr(0, GetParam().text.size()), GetParam().text);
  }
}
INSTANTIATE_TEST_SUITE_P(Texts, Encoding, testing::ValuesIn(kEncodings), row_name<EncodingCase>);

struct FileCase {
  const char* name;
  std::string bytes;
  bool is_tool_file;
  const char* read_name;  // of the tool that is read; empty: none
};
const FileCase kFiles[] = {
    {"Plain", "<TOOL NAME='a'/>", true, "a"},
    {"WithHeader", "<?xml version='1.0'?>\n<TOOL NAME='a'/>", true, "a"},
    {"LowerCase", "<tool NAME='a'/>", true, "a"},
    {"BlanksAroundTheName", "<\n TOOL \nNAME='a'\n/>", true, "a"},
    {"Component", "<TOOLCOMPONENT NAME='a'/>", true, ""},
    {"BehindAnother", "<X/><TOOL NAME='a'/>", true, "a"},
    {"Export", "<TOOLDB VER='0'><TOOL NAME='a'/><TOOL NAME='b'/></TOOLDB>", false, "a"},
    {"EmptyExport", "<TOOLDB VER='0'/>", false, ""},
    {"Broken", "<TOOL NAME='a'><X></TOOL>", false, ""},
    {"Utf16", utf16(u"<TOOL NAME='Ø'/>", true), true, "Ø"},
    {"Latin1", "<TOOL NAME='\xD8'/>", true, "Ø"},
    {"ZeroByte", std::string("<TOOL NAME='a\0'/>", 17), false, ""},
};

class ToolFile : public testing::TestWithParam<FileCase> {};
TEST_P(ToolFile, IsToldAndReadWithTheCodeOfItsName) {
  const std::string path = testing::TempDir() + "/a{{47}}b." + GetParam().name + ".ktf";
  std::ofstream(path, std::ios::binary) << GetParam().bytes;
  EXPECT_EQ(tdbXmlReader::IsTalvikToolFile(path.c_str()), GetParam().is_tool_file);
  tdbError error(0, "");
  const std::unique_ptr<tdbTool> tool(
      tdbXmlReader::ReadTool(path.c_str(), kNoPaths, error, nullptr));
  file_system().Remove(path);
  EXPECT_EQ(tool ? tool->GetName() : "", GetParam().read_name);
  if (tool) {
    EXPECT_EQ(tool->GetCode(), std::string("a/b.") + GetParam().name);
  } else {
    EXPECT_EQ(error.message.find(path + ": "), 0U) << error.message;
  }
}
INSTANTIATE_TEST_SUITE_P(Files, ToolFile, testing::ValuesIn(kFiles), row_name<FileCase>);

}  // namespace
}  // namespace tooldb

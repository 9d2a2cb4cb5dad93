// Documents that are broken, stored otherwise, or too much.

#include <fstream>

#include "tests/geom/row_name.h"
#include "tests/xml/xml_fixture.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/xml/text_encoding.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

std::string repeated(std::string_view text, int count) {
  std::string result;
  result.reserve(text.size() * static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

std::string numbered_attributes(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += " a" + std::to_string(i) + "=''";
  return text;
}

struct BrokenCase {
  const char* name;
  std::string text;
  const char* message;  // a part of it
  int code = 1;
};

const BrokenCase kBroken[] = {
    {"Empty", "", "no element <TOOL>"},
    {"NoMarkup", "a tool", "no element <TOOL>"},
    {"OtherRoot", "<FOO><TOOL NAME='a'/></FOO>", "line 1: a tool begins before <FOO> is closed"},
    {"OnlyAComponent", "<TOOLCOMPONENT NAME='a'/>", "no element <TOOL>"},
    {"NotClosed", "\n<TOOL NAME='a'>\n<DESCR>", "line 2: the text ends before <DESCR>"},
    {"RootNotClosed", "<TOOLDB>\n<TOOL NAME='a'/>\n", "line 3: the text ends before </TOOLDB>"},
    {"CrossedTags", "<TOOL>\n<A><B></A></B></TOOL>",
     "line 2: the end tag of <A> where <B> is open"},
    {"StrayEnd", "</TOOL>", "line 1: the end tag of <TOOL> closes nothing"},
    {"QuoteInName", "<TOOL NAME=\"6\" mill\">", "broken attribute in the tag <TOOL>"},
    {"NoQuotes", "<TOOL NAME=a/>", "broken attribute"},
    {"NoValue", "<TOOL NAME/>", "broken attribute"},
    {"AttributeTwice", "\n<TOOL NAME='a' NAME='b'/>",
     "line 2: the XML cannot be parsed (XML_ERROR_PARSING_ATTRIBUTE)"},
    {"ValueNotClosed", "<TOOL NAME='a/>", "broken attribute"},
    {"StrayInTag", "<TOOL NAME='a' ;>", "stray character in the tag <TOOL>"},
    {"LessInText", "<TOOL NAME='a'><DESCR>a < 5</DESCR></TOOL>", "begins no tag"},
    {"TagInText", "<TOOL NAME='a'><DESCR>a<b</DESCR></TOOL>", "stray character in the tag <b>"},
    {"CommentNotClosed", "<TOOL NAME='a'><!-- </TOOL>", "line 1: the comment is not closed"},
    {"CdataNotClosed", "<TOOL><![CDATA[ </TOOL>", "the CDATA section is not closed"},
    {"ToolInTool", "<TOOL NAME='a'><TOOL NAME='b'/></TOOL>", "a tool begins before <TOOL>"},
    {"Attributes", "<TOOL" + numbered_attributes(257) + "/>", "more than 256 attributes"},
    {"ManyAttributes", "<TOOL" + numbered_attributes(300000) + "/>", "more than 256 attributes"},
    {"DeepElements", tool_with(repeated("<HOLDER TYPE='CONE'>", 100000)), "more than 90 deep"},
    {"DeepClosed", tool_with(repeated("<A>", 100000) + repeated("</A>", 100000)), "90 deep"},
    {"DeepTree", tool_with(repeated("<HOLDER TYPE='CONE' NAME='h' PARENT='h'/>", 100000)),
     "more than 100 deep"},
    {"LongName", tool_with("<" + std::string(100000, 'x') + "></y>"), "...> is open"},
    {"LongNameOfWideLetters", tool_with("<a" + repeated("ä", 30) + "></y>"),
     "where <aäääääääääääääääääää...> is open"},
    {"CutterType", tool_with("\n<CUTTER TYPE='SQUARE'/>"), "line 2: \"SQUARE\" is no type", 3},
    {"NoShankType", tool_with("<SHANK/>"), "\"\" is no type of a SHANK", 3},
    {"LinkType", tool_with("<FIXEDLINK TYPE='LINK'/>"), "no type of a FIXEDLINK", 3},
    {"ToolType", tool_with("", "TYPE='SAW'"), "\"SAW\" is no TYPE of a TOOL", 3},
    {"SubType", tool_with("", "CUTTER_TYPE='BORE'"), "no CUTTER_TYPE", 3},
};

class Malformed : public testing::TestWithParam<BrokenCase> {};
TEST_P(Malformed, IsRefusedWithLineAndRemedy) {
  const BrokenCase& row = GetParam();
  tdbError error(0, "");
  EXPECT_EQ(tdbXmlReader::ImportToolFromXml(row.text.c_str(), kNoPaths, error, nullptr), nullptr);
  EXPECT_EQ(error.code, row.code);
  EXPECT_NE(error.message.find(row.message), std::string::npos) << error.message.substr(0, 300);
  EXPECT_LT(error.message.size(), 400U);
}
INSTANTIATE_TEST_SUITE_P(Texts, Malformed, testing::ValuesIn(kBroken), row_name<BrokenCase>);

// An export of sound tools with a fault between them: what the import brings, and its errors.
struct RecoveryCase {
  const char* name;
  std::string fault;
  std::vector<std::string> codes;
  std::vector<std::string> errors;  // parts of them, in order
};

const RecoveryCase kRecoveries[] = {
    {"BrokenTag", "<TOOL NAME=\"6\" mill\"></TOOL>\n", {"a", "z"}, {"line 3: a broken attribute"}},
    {"SwallowedTag", "<TOOL NAME=\"x></TOOL>\n", {"a", "z"}, {"line 3: a broken attribute"}},
    {"Unclosed", "<TOOL NAME='x'><DESCR></TOOL>", {"a", "z"}, {"the end tag of <TOOL> where"}},
    {"Two",
     "<TOOL NAME='x'><</TOOL>\n<TOOL><HOLDER TYPE='?'/></TOOL>",
     {"a", "z"},
     {"line 3", "line 4: \"?\" is no type"}},
    {"StrayEndTag", "</TOOL>", {"a", "z"}, {"closes nothing"}},
    {"Comment", "<!-- <TOOL NAME='x'> -->", {"a", "z"}, {}},
    {"OpenComment", "<!-- <TOOL NAME='x'/>", {"a"}, {"the comment is not closed"}},
    {"Nameless", "<TOOL/>", {"a", "z"}, {"neither code nor name"}},
    {"Doubles",
     "<TOOL NAME=' A '/><TOOL NAME='a'/><TOOL CODE='a - Clone(2)' NAME='q'/>",
     {"a", "A - Clone(1)", "a - Clone(2)", "a - Clone(2) - Clone(1)", "z"},
     {}},
    {"Others", "<TOOLCOMPONENT NAME='k'/><FUTURE><X/></FUTURE>", {"a", "z"}, {}},
};

class Recovery : public testing::TestWithParam<RecoveryCase> {};
TEST_P(Recovery, LosesOnlyTheBrokenEntry) {
  const std::string text = "<TOOLDB VER='0'>\n<TOOL NAME='a'/>\n" + GetParam().fault +
                           "\n<TOOL NAME=\"z\"></TOOL>\n</TOOLDB>\n";
  const std::string path = testing::TempDir() + "/recovery_" + GetParam().name + ".xml";
  std::ofstream(path, std::ios::binary) << text;
  std::vector<tdbTool*> tools;
  std::vector<tdbError> errors;
  EXPECT_EQ(tdbXmlReader::ImportFromFile(path.c_str(), kNoPaths, tools, errors, nullptr),
            GetParam().errors.empty());
  file_system().Remove(path);
  std::vector<std::string> codes;
  for (tdbTool* tool : tools) {
    codes.push_back(tool->GetCode());
    delete tool;
  }
  EXPECT_EQ(codes, GetParam().codes);
  ASSERT_EQ(errors.size(), GetParam().errors.size());
  for (std::size_t i = 0; i < errors.size(); ++i) {
    EXPECT_EQ(errors[i].message.find(path + ": line "), 0U) << errors[i].message;
    EXPECT_NE(errors[i].message.find(GetParam().errors[i]), std::string::npos) << errors[i].message;
  }
}
INSTANTIATE_TEST_SUITE_P(Exports, Recovery, testing::ValuesIn(kRecoveries), row_name<RecoveryCase>);

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
    {"Utf8", "Fr\xC3\xA4ser", "Fräser"},
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
    {"LoneSurrogates", utf16(std::u16string{u'a', 0xD83D, u'b', 0xDC00}, false), "a\uFFFDb\uFFFD"},
    {"HalfAUnit", utf16(u"ab", false) + "c", "ab\uFFFD"},
};

class Encoding : public testing::TestWithParam<EncodingCase> {};
TEST_P(Encoding, BecomesUtf8) {
  std::string storage;
  EXPECT_EQ(document_text(GetParam().bytes, storage), GetParam().text);
}
INSTANTIATE_TEST_SUITE_P(Texts, Encoding, testing::ValuesIn(kEncodings), row_name<EncodingCase>);

TEST(Encoding, AZeroByteIsRefusedWithItsLine) {
  std::string storage;
  try {
    document_text(std::string_view("a\n\0b", 4), storage);
    FAIL();
  } catch (const tdbError& error) {
    EXPECT_EQ(error.message.find("line 2: a zero byte"), 0U);
  }
}

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

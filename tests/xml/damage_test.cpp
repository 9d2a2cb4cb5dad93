// Sound files that a disk, a transfer or an editor has damaged.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "tests/xml/xml_fixture.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/tool_db.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

/// Twenty tools of every make, from the smallest file on.
std::vector<std::string> sample_tools() {
  const std::string folder = TOOLDB_SOURCE_DIR "/examples/library";
  std::vector<std::string> texts;
  for (const std::string& name : file_system().List(folder)) {
    if (name.ends_with(".ktf")) texts.push_back(file_system().Read(folder + '/' + name));
  }
  std::ranges::sort(texts, {}, [](const std::string& text) { return text.size(); });
  if (texts.size() > 20) texts.resize(20);
  return texts;
}

/// How many bytes lie between two that are damaged. TOOLDB_EVERY_BYTE=1 in the environment takes
/// every one.
std::size_t stride() { return std::getenv("TOOLDB_EVERY_BYTE") == nullptr ? 13 : 1; }

/// What the reader makes of a text: a tool that can be written, or an error that says where.
bool is_read(const std::string& text) {
  tdbError error(0, "");
  const std::unique_ptr<tdbTool> tool(
      tdbXmlReader::ImportToolFromXml(text.c_str(), kNoPaths, error, nullptr));
  if (tool == nullptr) {
    const bool says_where = error.message.find("line ") != std::string::npos ||
                            error.message.find("there is no element") != std::string::npos;
    EXPECT_TRUE(says_where) << error.message;
    return false;
  }
  std::string written;
  tool->WriteXml(written, kNoPaths);
  EXPECT_FALSE(written.empty());
  return true;
}

TEST(Damage, ATextThatIsCutIsNoTool) {
  for (const std::string& text : sample_tools()) {
    const std::size_t end = text.rfind("</TOOL>") + std::string_view("</TOOL>").size();
    ASSERT_TRUE(is_read(text));
    for (std::size_t size = 0; size < end; size += std::min(stride(), end - size)) {
      EXPECT_FALSE(is_read(text.substr(0, size))) << "cut to " << size << " bytes";
    }
  }
}

TEST(Damage, AByteThatIsFlippedDoesNoHarm) {
  std::size_t reads = 0;
  for (std::string text : sample_tools()) {
    for (std::size_t at = 0; at < text.size(); at += stride()) {
      for (const char flip : {'\x01', '\x20', '\x80', '\xff'}) {
        text[at] = static_cast<char>(text[at] ^ flip);
        reads += is_read(text) ? 1U : 0U;
        text[at] = static_cast<char>(text[at] ^ flip);
      }
    }
  }
  EXPECT_GT(reads, 0U) << "most bytes are those of values";
}

TEST(Damage, OfOneFileAmongThousandsLosesThatAlone) {
  constexpr int kFiles = 10000;
  const auto folder = std::filesystem::path(testing::TempDir()) / "tooldb-one-bad-file";
  std::filesystem::create_directories(folder);
  const std::string text = tool_with("");
  for (int i = 0; i < kFiles; ++i) {
    std::ofstream(folder / (std::to_string(i) + ".ktf"), std::ios::binary)
        << (i == kFiles / 2 ? text.substr(0, text.size() / 2) : text);
  }
  tdbToolDB db("", 0);
  std::vector<std::string> errors;
  db.SetErrorCallback(
      [](void* user, const tdbToolDB*, tdbError* error) {
        static_cast<std::vector<std::string>*>(user)->push_back(error->message);
        return 0;
      },
      &errors);
  EXPECT_TRUE(db.Init(folder.string()) && db.Read());
  EXPECT_EQ(db.GetToolCount(1), kFiles - 1);
  ASSERT_EQ(errors.size(), 1U);
  EXPECT_NE(errors.front().find("5000.ktf: line 1"), std::string::npos) << errors.front();
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace tooldb

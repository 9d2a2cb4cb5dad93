#include "tests/filters/import_reports.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <set>

#include "filters/quantity.h"
#include "tooldb/type_names.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

namespace fs = std::filesystem;

std::optional<std::string> read_file(const fs::path& path) {
  if (!tdbFileUtil::file_exists(path.string())) return std::nullopt;
  std::string bytes;
  tdbFileUtil::read_file(path.string(), bytes);
  return bytes;
}

void check_text(const std::string& text) {
  EXPECT_TRUE(std::ranges::none_of(text, [](char c) {
    return std::string_view("<&\"").find(c) != std::string_view::npos ||
           (static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t');
  })) << text;
}

void check_item(void*, tdbItem* item) {
  check_text(item->GetName());
  for (const auto& [name, value] : item->GetParams()) check_text(value);
  if (auto* cutter = dynamic_cast<tdbToolCutter*>(item)) {
    // An entry of an unknown shape keeps a cutter without an outline.
    const bool empty = cutter->GetType() == 5 && *cutter->GetProfileXml() == '\0';
    EXPECT_TRUE(empty || cutter->BuildProfile()) << dimensions(*cutter);
  }
  if (auto* shank = dynamic_cast<tdbToolShank*>(item)) {
    EXPECT_TRUE(shank->BuildProfile()) << dimensions(*shank);
  }
}

void check_tool(tdbTool& tool, std::set<std::string>& codes) {
  EXPECT_FALSE(tool.GetCode().empty());
  EXPECT_TRUE(codes.insert(tool.GetCode()).second) << tool.GetCode() << " comes twice";
  for (const char* text : {tool.GetDescr(), tool.GetComment()}) check_text(text);
  for (const auto& [name, value] : tool.GetParamList()) check_text(name + value);
  check_text(tool.GetCode());
  tool.Visit(check_item, nullptr);
}

}  // namespace

std::string sample_source(const std::string& path) {
  const auto bytes = read_file(fs::path(TOOLDB_SAMPLE_SOURCES) / path);
  EXPECT_TRUE(bytes) << path;
  return bytes.value_or("");
}

ImportResult import_sample(const std::string& path) {
  const fs::path folder = (fs::path(TOOLDB_SAMPLE_SOURCES) / path).parent_path();
  return import_tools(sample_source(path), fs::path(path).filename().string(),
                      [&](const std::string& beside) { return read_file(folder / beside); });
}

ImportResult import_text(std::string_view text, const std::string& file_name) {
  ImportResult result = import_tools(text, file_name, nullptr);
  check_import(result);
  return result;
}

ImportEntry only_entry(ImportResult result) {
  EXPECT_EQ(result.entries.size(), 1U);
  return result.entries.empty() ? ImportEntry() : std::move(result.entries.front());
}

bool has_note(const ImportEntry& entry, NoteKind kind, std::string_view text) {
  return std::ranges::any_of(entry.notes, [&](const ImportNote& note) {
    return note.kind == kind && note.text.find(text) != std::string::npos;
  });
}

tdbCuttingTool* cutting_tool(const ImportEntry& entry) {
  for (unsigned i = 0; entry.tool && i < entry.tool->GetItemCount(); ++i) {
    if (auto* found = dynamic_cast<tdbCuttingTool*>(entry.tool->GetItem(i))) return found;
  }
  return nullptr;
}

std::string dimensions(const tdbItem& item) {
  std::string text;
  for (const auto& [name, value] : item.GetParams()) {
    text += (text.empty() ? "" : " ") + name + "=" + value;
  }
  return text;
}

std::string summary(const ImportEntry& entry) {
  if (!entry.tool) return "no tool";
  tdbTool& tool = *entry.tool;
  std::string text = tool.GetUnitOfMeasurement() == 0 ? "mm " : "in ";
  text += tdbGetTypeName(tool) + " D" + short_text(tool.GetDiameter()) + " L" +
          short_text(tool.GetLength() + 0.0);
  tdbCuttingTool* cutting = cutting_tool(entry);
  if (cutting == nullptr) return text;
  text += ": " + cutting->GetTypeName();
  if (const std::string sizes = dimensions(*cutting->GetCutter()); !sizes.empty())
    text += " " + sizes;
  if (cutting->GetShank() == nullptr) return text;
  return text + "; shank " + short_text(cutting->GetShank()->GetLength());
}

void check_import(const ImportResult& result) {
  std::set<std::string> codes;
  std::set<std::string> component_codes;
  for (const ImportEntry& entry : result.entries) {
    SCOPED_TRACE(entry.source);
    EXPECT_FALSE(entry.source.empty());
    EXPECT_FALSE(entry.notes.empty());
    if (entry.tool) check_tool(*entry.tool, codes);
    if (entry.component) {
      EXPECT_TRUE(component_codes.insert(entry.component->GetCode()).second);
      entry.component->Visit(check_item, nullptr);
    }
  }
  EXPECT_FALSE(result.entries.empty() && result.notes.empty()) << "nothing said";
}

}  // namespace tooldb

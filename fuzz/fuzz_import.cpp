// One program per format: the name of the file decides where its content does not.

#include <cstddef>
#include <cstdint>
#include <memory>

#include "filters/import.h"
#include "fuzz/round_trip.h"
#include "tooldb/xml_reader.h"

namespace {

constexpr std::string_view kBit =
    R"({"version": 2, "name": "6 mm", "shape": "endmill.fcstd", "parameter": {"Diameter": "6 mm",
        "CuttingEdgeHeight": "20 mm", "Length": "50 mm", "ShankDiameter": "6 mm"}})";

// What a library refers to is there, but not where it is looked for first.
std::optional<std::string> sibling(const std::string& path) {
  if (path.starts_with("../")) return std::nullopt;
  return std::string(kBit);
}

template <class Part>
std::string written(const Part& part) {
  std::string text;
  part.WriteXml(text, {});
  return text;
}

std::unique_ptr<tdbTool> read_tool(const std::string& text) {
  tdbError error;
  return std::unique_ptr<tdbTool>(
      tdbXmlReader::ImportToolFromXml(text.c_str(), {}, error, nullptr));
}

std::unique_ptr<tdbToolComponent> read_component(const std::string& text) {
  std::vector<tdbToolComponent*> found;
  tdbError error;
  tdbXmlReader::ImportFromXml(text.c_str(), {}, found, error, nullptr);
  fuzz::expect(found.size() == 1, "an imported component can be read");
  found[0]->Visit([](void*, tdbItem* item) { item->SetItemComponent(true); }, nullptr);
  return std::unique_ptr<tdbToolComponent>(found[0]);
}

template <class Part>
void check(Part* part, std::unique_ptr<Part> (*read)(const std::string& text)) {
  if (part == nullptr) return;
  fuzz::expect(!part->GetCode().empty(), "what is imported has a code");
  fuzz::expect(!fuzz::carries_markup(*part), "what is imported can be stored");
  const std::string text = written(*part);
  const auto again = read(text);
  fuzz::expect(again != nullptr, "what is imported can be read");
  fuzz::expect_same(text, written(*again));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const tooldb::ImportResult result = tooldb::import_tools(bytes, TOOLDB_FUZZ_FILE, sibling);
  fuzz::expect(!result.entries.empty() || !result.notes.empty(), "an import says something");
  for (const tooldb::ImportEntry& entry : result.entries) {
    fuzz::expect(!entry.notes.empty(), "every entry has a report");
    check(entry.tool.get(), read_tool);
    check(entry.component.get(), read_component);
  }
  return 0;
}

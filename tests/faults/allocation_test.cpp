#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <new>

#include "tests/geom/row_name.h"
#include "tooldb/tooldb.h"

// Every allocation of a public operation fails once, and then for ever after: the operation must
// answer as it does for any failure, and leave its surroundings whole.

namespace {

/// Which allocation fails; nothing does while `countdown` is negative.
struct Shortage {
  std::atomic<long> countdown{-1};
  std::atomic<bool> lasting{false};
  std::atomic<bool> met{false};
};
Shortage shortage;

bool allocation_fails() {
  if (shortage.countdown < 0) return false;
  if (shortage.countdown > 0) {
    --shortage.countdown;
    return false;
  }
  shortage.met = true;
  if (!shortage.lasting) shortage.countdown = -1;
  return true;
}

void* allocate(std::size_t size) {
  void* memory = allocation_fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

namespace fs = std::filesystem;

std::unique_ptr<tdbTool> make_tool(const std::string& code) {
  auto tool = std::make_unique<tdbTool>(code, "A tool with a name that is allocated");
  auto cutting_tool =
      std::make_unique<tdbCuttingTool>(new tdbToolCutter(2), new tdbToolShank(0), 3);
  cutting_tool->SetName("Cutting tool with a long name");
  tool->AddItem(cutting_tool.release());
  tool->AddHolder(new tdbToolHolder(0));
  tool->AddParam("VENDOR", "a vendor with a name of some length");
  tool->AddOffsetParam(OFFSET_VALUE());
  return tool;
}

/// A folder of two tools and a component, opened and read; anew for each failing allocation.
class Workshop {
 public:
  explicit Workshop(const fs::path& folder)
      : folder_(folder), components_("components", 0), tools_("tools", 0) {
    fs::remove_all(folder_);
    fs::create_directories(folder_);
    components_.Create((folder_ / "components").string());
    tools_.Create(folder_.string());
    tools_.LinkToolComponents(&components_);
    auto component = std::make_unique<tdbToolComponent>(0, "Adapter", "ADAPTER-ISO40-LONG");
    component->SetItemComponent(true);
    component->AddItem(new tdbToolHolder(0));
    component->GetItem(0)->SetItemComponent(true);
    if (components_.AddTool(component.get(), false)) static_cast<void>(component.release());
    for (const char* code : {"FIRST-TOOL-WITH-LONG-CODE", "SECOND-TOOL-WITH-LONG-CODE"}) {
      auto tool = make_tool(code);
      if (tools_.AddTool(tool.get(), false)) static_cast<void>(tool.release());
    }
    std::string text;
    static_cast<const tdbToolDB&>(tools_).WriteXml(text, {});
    document = text;
    folder_text = folder_.string();
    export_target = Path("components");
    file_text = Path("FIRST-TOOL-WITH-LONG-CODE.ktf");
    spare = make_tool("SPARE-TOOL-WITH-A-LONG-CODE");
    replacement = make_tool(first_code);
  }

  tdbToolDB& Tools() { return tools_; }
  tdbToolComponentsDB& Components() { return components_; }
  tdbTool* First() { return tools_.GetTool(0, 1); }
  std::string Path(const char* name) const { return (folder_ / name).string(); }

  /// Each file of the folder parses: nothing was cut short.
  void ExpectWholeFiles() const {
    for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
      if (entry.path().extension() != ".ktf") continue;
      tdbError error;
      const std::unique_ptr<tdbTool> tool(
          tdbXmlReader::ReadTool(entry.path().c_str(), {}, error, nullptr));
      EXPECT_NE(tool, nullptr) << entry.path() << ": " << error.message;
    }
  }

  /// The list holds what the folder holds.
  void ExpectListAndDiskAgree() {
    EXPECT_EQ(tools_.GetToolCount(1), tools_.GetToolCount(2));
    for (int i = 0; i < tools_.GetToolCount(1); ++i) {
      const std::string code = tools_.GetToolCodebyPosition(i, 1);
      EXPECT_TRUE(tools_.IsToolCodeExists(code)) << code;
    }
  }

  std::string document;
  std::unique_ptr<tdbTool> spare;
  std::unique_ptr<tdbTool> replacement;  ///< of the first tool
  // Arguments, made before allocations fail: an operation takes them by value.
  std::string first_code = "FIRST-TOOL-WITH-LONG-CODE";
  std::string component_code = "ADAPTER-ISO40-LONG";
  std::string temporary_code = "TEMPORARY-TOOL-WITH-LONG-CODE";
  std::string folder_text;
  std::string export_target;
  std::string file_text;

 private:
  fs::path folder_;
  tdbToolComponentsDB components_;
  tdbToolDB tools_;
};

struct Operation {
  const char* name;
  std::function<void(Workshop&)> run;
  bool list_follows_disk = true;
};

std::ostream& operator<<(std::ostream& out, const Operation& operation) {
  return out << operation.name;
}

void add_spare(Workshop& shop, bool replace) {
  tdbError error;
  if (shop.Tools().AddTool(shop.spare.get(), error, replace)) {
    static_cast<void>(shop.spare.release());
  }
}

template <class Item>
void delete_all(std::vector<Item*>& items) {
  for (Item* item : items) delete item;
}

class Allocation : public testing::TestWithParam<Operation> {};

TEST_P(Allocation, FailingLeavesEverythingWhole) {
  const fs::path folder = fs::path(testing::TempDir()) / "tooldb-allocation" / GetParam().name;
  for (const bool lasting : {false, true}) {
    // Far beyond what any of the operations allocates, so that a loop without end is seen.
    constexpr long kMostAllocations = 20000;
    long n = 0;
    for (bool met = true; met; ++n) {
      ASSERT_LT(n, kMostAllocations);
      Workshop shop(folder);
      shortage.met = false;
      shortage.lasting = lasting;
      shortage.countdown = n;
      bool escaped = false;
      try {
        GetParam().run(shop);
      } catch (...) {
        escaped = true;
      }
      shortage.countdown = -1;
      met = shortage.met;
      ASSERT_FALSE(escaped) << "an exception left the library at allocation " << n;
      shop.ExpectWholeFiles();
      if (GetParam().list_follows_disk) shop.ExpectListAndDiskAgree();
      auto next = make_tool("NEXT");
      const bool usable = shop.Tools().AddTool(next.get(), false);
      if (usable) static_cast<void>(next.release());
      ASSERT_TRUE(usable) << "after allocation " << n;
    }
    EXPECT_GT(n, 1) << "the operation allocates nothing: the test would not test it";
  }
}

const Operation kOperations[] = {
    {"AddTool", [](auto& shop) { add_spare(shop, false); }},
    {"AddToolReplacing",
     [](auto& shop) {
       shop.spare.swap(shop.replacement);
       add_spare(shop, true);
     }},
    {"UpdateTool",
     [](auto& shop) {
       tdbError error;
       shop.Tools().UpdateTool(shop.First(), error);
     }},
    {"RemoveTool",
     [](auto& shop) {
       tdbError error;
       tdbTool* tool = shop.First();
       if (shop.Tools().RemoveTool(tool, error)) delete tool;
     }},
    {"CloneTool",
     [](auto& shop) {
       tdbError error;
       shop.Tools().CloneTool(shop.First(), error);
     }},
    {"Init", [](auto& shop) { shop.Tools().Init(std::move(shop.folder_text)); }, false},
    {"Reload", [](auto& shop) { shop.Tools().Reload({}); }},
    {"RefreshTool", [](auto& shop) { shop.Tools().RefreshTool(shop.first_code); }},
    {"ReadFromFolder",
     [](auto& shop) {
       const std::unique_ptr<tdbTool> tool(shop.Tools().GetToolByCode(shop.first_code, 2));
       const std::unique_ptr<tdbTool> by_position(shop.Tools().GetTool(1, 2));
     }},
    {"ImportFromXml", [](auto& shop) { shop.Tools().ImportFromXml(shop.document.c_str(), {}); }},
    {"Import",
     [](auto& shop) {
       static const auto other = [] {
         auto db = std::make_unique<tdbToolDB>("other", 1);
         db->AddTool(make_tool("IMPORTED-TOOL-WITH-LONG-CODE").release(), false);
         return db;
       }();
       shop.Tools().Import(other.get());
     }},
    {"Export",
     [](auto& shop) { shop.Tools().Export(std::move(shop.export_target), "exported", {}); }},
    {"Sort", [](auto& shop) { shop.Tools().Sort(0, true); }},
    {"WriteDocument",
     [](auto& shop) {
       std::string out;
       static_cast<const tdbToolDB&>(shop.Tools()).WriteXml(out, {});
     }},
    {"ImportToolFromXml",
     [](auto& shop) {
       tdbError error;
       const std::unique_ptr<tdbTool> tool(
           tdbXmlReader::ImportToolFromXml(shop.document.c_str(), {}, error, nullptr));
     }},
    {"ReaderImport",
     [](auto& shop) {
       std::vector<tdbTool*> tools;
       tdbError error;
       tdbXmlReader::ImportFromXml(shop.document.c_str(), {}, tools, error, nullptr);
       delete_all(tools);
     }},
    {"ReadToolFile",
     [](auto& shop) {
       tdbError error;
       const std::unique_ptr<tdbTool> tool(
           tdbXmlReader::ReadTool(shop.file_text.c_str(), {}, error, nullptr));
     }},
    {"IsToolFile", [](auto& shop) { tdbXmlReader::IsTalvikToolFile(shop.file_text.c_str()); }},
    {"RemoveComponent",
     [](auto& shop) {
       shop.Components().RemoveToolComponentByCode(std::move(shop.component_code));
     }},
    {"ReloadComponents", [](auto& shop) { shop.Components().Reload({}); }},
    {"TemporaryTool",
     [](auto& shop) { tdbAddTempMillTool(&shop.Tools(), std::move(shop.temporary_code)); }},
    {"GetProfile",
     [](auto& shop) {
       std::vector<std::vector<Point2d<double>>> contours;
       shop.First()->GetCutter(0)->GetProfile(nullptr, contours, 0.1, 0);
     }},
    {"GetShape",
     [](auto& shop) {
       std::vector<Triangle<double>> triangles;
       shop.First()->GetCutter(0)->GetShape(nullptr, triangles, 0.1);
     }},
    {"OffsetProfile",
     [](auto&) {
       static const std::vector<Point2d<double>> square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
       tdbProfile::OffsetProfile2(square, 1);
     }},
};

INSTANTIATE_TEST_SUITE_P(Operations, Allocation, testing::ValuesIn(kOperations),
                         row_name<Operation>);

}  // namespace

#include "tooldb/type_names.h"

#include <gtest/gtest.h>

#include <memory>

#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

namespace {

TEST(TypeNames, AreThoseOfFilesAndFoundAgain) {
  const std::pair<std::shared_ptr<tdbItem>, const char*> kItems[] = {
      {std::make_shared<tdbTool>("T", 5), "TAP"},
      {std::make_shared<tdbTool>("T", 4), "PROBE"},
      {std::make_shared<tdbCuttingTool>(17), "TURNING_INSERT_ROMBOID"},
      {std::make_shared<tdbCuttingTool>(27), "UNDEF"},
      {std::make_shared<tdbToolCutter>(1), "SPHERIC"},
      {std::make_shared<tdbToolCutter>(20), "CUSTOM_REVOLUTED"},
      {std::make_shared<tdbToolShank>(1), "CONE"},
      {std::make_shared<tdbToolHolder>(3), "STL"},
      {std::make_shared<tdbFixedLink>(0), "TRANSFORMATION"},
      {std::make_shared<tdbToolComponent>(0), ""},
  };
  for (const auto& [item, type_name] : kItems) {
    EXPECT_EQ(tdbGetTypeName(*item), type_name);
    EXPECT_EQ(tdbGetTypeByName(*item, "mill_flatend"), -1);
    for (const auto& name : tdbGetTypeNames(*item)) {
      const std::unique_ptr<tdbItem> copy(item->Clone());
      copy->SetType(tdbGetTypeByName(*item, name));
      EXPECT_EQ(tdbGetTypeName(*copy), name);
    }
  }
}

TEST(TypeNamesOfOlderFiles, AreReadButNotListed) {
  const tdbToolCutter cutter(1);
  EXPECT_EQ(tdbGetTypeByName(cutter, "CUSTOM"), 5);
  for (const auto& name : tdbGetTypeNames(cutter)) EXPECT_NE(name, "CUSTOM");
}

}  // namespace

#include "tooldb/type_names.h"

#include <gtest/gtest.h>

#include <memory>

#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

namespace {

struct NameCase {
  std::string_view name;
  const tdbItem& item;
  std::string_view type_name;
};

const tdbTool kTap("T", 5);
const tdbTool kOtherTool("T", 4);
const tdbCuttingTool kInsert(17);
const tdbCuttingTool kNoCuttingTool(27);
const tdbToolCutter kBall(1);
const tdbToolCutter kUnnamedCutter(20);
const tdbToolShank kCone(1);
const tdbToolHolder kModel(3);
const tdbFixedLink kLink(0);
const tdbToolComponent kComponent(0);

class TypeNames : public testing::TestWithParam<NameCase> {};

TEST_P(TypeNames, AreThoseOfFiles) {
  EXPECT_EQ(tdbGetTypeName(GetParam().item), GetParam().type_name);
}

TEST_P(TypeNames, AreFoundAgain) {
  for (const auto& name : tdbGetTypeNames(GetParam().item)) {
    const std::unique_ptr<tdbItem> copy(GetParam().item.Clone());
    copy->SetType(tdbGetTypeByName(*copy, name));
    EXPECT_EQ(tdbGetTypeName(*copy), name);
  }
  EXPECT_EQ(tdbGetTypeByName(GetParam().item, "mill_flatend"), -1);
}

INSTANTIATE_TEST_SUITE_P(
    Classes, TypeNames,
    testing::Values(NameCase{"Tool", kTap, "TAP"}, NameCase{"OtherTool", kOtherTool, "PROBE"},
                    NameCase{"CuttingTool", kInsert, "TURNING_INSERT_ROMBOID"},
                    NameCase{"NoCuttingTool", kNoCuttingTool, "UNDEF"},
                    NameCase{"Cutter", kBall, "SPHERIC"},
                    NameCase{"UnnamedCutter", kUnnamedCutter, "CUSTOM_REVOLUTED"},
                    NameCase{"Shank", kCone, "CONE"}, NameCase{"Holder", kModel, "STL"},
                    NameCase{"Link", kLink, "TRANSFORMATION"},
                    NameCase{"Component", kComponent, ""}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(TypeNamesOfOlderFiles, AreReadButNotListed) {
  EXPECT_EQ(tdbGetTypeByName(kBall, "CUSTOM"), 5);
  for (const auto& name : tdbGetTypeNames(kBall)) EXPECT_NE(name, "CUSTOM");
}

}  // namespace

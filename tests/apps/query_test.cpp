#include "apps/query.h"

#include <gtest/gtest.h>

#include <map>

namespace tooldb {
namespace {

using Tool = std::map<std::string, FieldValue, std::less<>>;

// A half-inch drill and a 10 mm end mill, with the fields that the cases ask for.
const Tool kDrill = {{"code", {"9", 9, false}},
                     {"kind", {"DRILL", {}, false}},
                     {"diameter", {"0.5", 0.5, true}},
                     {"teeth", {"2", 2, false}},
                     {"comment", {"", {}, false}}};
const Tool kMill = {{"code", {"D10-R2", {}, false}},
                    {"kind", {"MILL_FLATEND", {}, false}},
                    {"diameter", {"10", 10, false}},
                    {"teeth", {"4", 4, false}},
                    {"comment", {"2\" shank, \"new\" (Gr\xc3\xbcn)", {}, false}},
                    {"param.maker", {"A & B", {}, false}}};

std::optional<FieldKind> kind_of(std::string_view field) {
  if (field == "diameter") return FieldKind::kLength;
  if (field == "teeth") return FieldKind::kNumber;
  const bool known = field.starts_with("param.") || kMill.contains(field);
  return known ? std::optional(FieldKind::kText) : std::nullopt;
}

bool matches(const Query& query, const Tool& tool) {
  return query.Matches([&](std::string_view field) {
    const auto found = tool.find(field);
    return found == tool.end() ? std::nullopt : std::optional(found->second);
  });
}

struct MatchCase {
  const char* text;
  bool drill;
  bool mill;
};

constexpr MatchCase kMatches[] = {
    {"kind = drill", true, false},
    {"kind==DRILL", true, false},
    {"kind != drill", false, true},
    {"kind ~ mill_", false, true},
    {"kind contains mill_", false, true},
    {"kind !~ mill_", true, false},
    {"code < 10", true, false},   // both numbers: by value
    {"code < d10", true, false},  // else as texts
    {"code >= 9.0", true, true},
    {"diameter > 2", false, true},  // each in its own unit
    {"diameter = 12.7mm", true, false},
    {"diameter = 0.5in", true, false},
    {"diameter < 0.5inch", false, true},
    {"diameter ~ .5", true, false},
    {"diameter <= +10", true, true},
    {"teeth > -1", true, true},
    {"teeth = 4e0", false, true},
    {"not comment", true, false},
    {"param.maker = 'a & b'", false, true},
    {"param.maker != x", true, true},  // what is missing differs
    {"param.maker !~ x", true, true},
    {"param.maker < zzz", false, true},  // but is not smaller
    {"comment = '2\" shank, \"new\" (gr\xc3\xbcn)'", false, true},
    {"comment ~ \"\\\"new\\\"\"", false, true},
    // "not" before "and" before "or"
    {"kind = drill or kind ~ mill and teeth = 2", true, false},
    {"(kind = drill or kind ~ mill) and teeth = 4", false, true},
    {"not kind = drill and teeth = 2 or code = 9", true, false},
    {"not (kind = drill and teeth = 2) and code ~ d", false, true},
    {"NOT NOT kind = drill", true, false},
    {"!kind=drill&&teeth=4||code=9", true, true},
};

class QueryMatches : public testing::TestWithParam<MatchCase> {};
TEST_P(QueryMatches, AsWritten) {
  const auto& [text, drill, mill] = GetParam();
  const Query query = Query::Parse(text, kind_of);
  EXPECT_EQ(matches(query, kDrill), drill) << text;
  EXPECT_EQ(matches(query, kMill), mill) << text;
}
INSTANTIATE_TEST_SUITE_P(Rows, QueryMatches, testing::ValuesIn(kMatches));

struct FaultCase {
  const char* text;
  std::size_t position;
  const char* message;
};

constexpr FaultCase kFaults[] = {
    {"", 0, "expected a field at the end"},
    {"diameter >", 10, "expected a value after '>' at the end"},
    {"diameter > and", 11, "expected a value after '>', found 'and'"},
    {"diameter > abc", 11, "'diameter' is a number, 'abc' is not"},
    {"diameter > 1e999", 11, "'diameter' is a number, '1e999' is not"},
    {"teeth = 4mm", 8, "'teeth' is a number, '4mm' is not"},
    {"code = a kind = b", 9, "expected 'and' or 'or', found 'kind'"},
    {"code = a and", 12, "expected a field at the end"},
    {"'code' = a", 0, "expected a field, found 'code'"},
    {"code = a)", 8, "this parenthesis was not opened"},
    {"()", 1, "expected a field, found ')'"},
    {"code = 'a", 7, "the quoted text is not closed"},
    {"code = \"a\\", 7, "the quoted text is not closed"},
    {"code & a", 5, "unexpected '&'"},
};

class QueryFaults : public testing::TestWithParam<FaultCase> {};
TEST_P(QueryFaults, AreNamedWithTheirPlace) {
  const auto& [text, position, message] = GetParam();
  try {
    Query::Parse(text, kind_of);
    ADD_FAILURE() << "accepted: " << text;
  } catch (const QueryError& error) {
    EXPECT_STREQ(error.what(), message);
    EXPECT_EQ(error.position, position);
  }
}
INSTANTIATE_TEST_SUITE_P(Rows, QueryFaults, testing::ValuesIn(kFaults));

TEST(QueryNesting, IsBoundedByLengthOnly) {
  const std::size_t depth = 200'000;
  const std::string text = std::string(depth, '(') + "kind = drill" + std::string(depth, ')');
  EXPECT_TRUE(matches(Query::Parse(text, kind_of), kDrill));
  EXPECT_TRUE(matches(Query::Parse(std::string(depth, '!') + text, kind_of), kDrill));
}

TEST(CompareValues, IsAnOrder) {
  // Numbers by size whatever their unit, then texts, then what is missing.
  const std::vector<std::optional<FieldValue>> ordered = {
      FieldValue{"-1", -1, false}, FieldValue{"9", 9, false},   FieldValue{"0.5", 0.5, true},
      FieldValue{"13", 13, false}, FieldValue{"1a", {}, false}, FieldValue{"2", {}, false},
      FieldValue{"B", {}, false},  FieldValue{"b2", {}, false}, std::nullopt};
  for (std::size_t i = 0; i < ordered.size(); ++i) {
    for (std::size_t j = 0; j < ordered.size(); ++j) {
      const int expected = i < j ? -1 : static_cast<int>(i > j);
      EXPECT_EQ(compare_values(ordered[i], ordered[j]), expected) << i << ' ' << j;
    }
  }
}

}  // namespace
}  // namespace tooldb

// Write, read, write over generated trees.

#include <random>

#include "geom/euler_angles.h"
#include "tests/xml/golden_documents.h"
#include "tooldb/model/tree_walk.h"

namespace tooldb {
namespace {

class TreeGenerator {
 public:
  TreeGenerator(unsigned seed, bool unique_names) : random_(seed), unique_names_(unique_names) {}

  tdbTool Tool() {
    tdbTool tool("T", Pick({0, 3, 5, 9}));
    tool.SetName(Name());
    tool.SetPos(Placement());
    for (int i = Below(8); i > 0; --i) Grow(tool, 0);
    return tool;
  }

 private:
  int Below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
  int Pick(std::initializer_list<int> values) {
    return *(values.begin() + Below(static_cast<int>(values.size())));
  }

  // Few names, so that many parts share one.
  std::string Name() {
    if (unique_names_) return "part " + std::to_string(++count_);
    return std::string(1, "abcT"[Below(4)]);
  }

  Transformation<double> Placement() {
    return join_zyx({Pick({-170, -90, 0, 33, 180}) * 1.0, Pick({-90, 0, 12, 45}) * 1.0,
                     Pick({0, 30, 90, 180}) * 1.0},
                    {Below(100) / 4.0, 0, Below(10) / -1e5});
  }

  std::unique_ptr<tdbItem> Part() {
    switch (Below(7)) {
      case 0:
        return std::make_unique<tdbToolCutter>(Below(20));
      case 1:
        return std::make_unique<tdbToolShank>(Pick({0, 1, 2, 3, 5}));
      case 2:
        return std::make_unique<tdbCuttingTool>(Below(27));
      case 3:
        return std::make_unique<tdbFixedLink>(0);
      case 4:
        return golden_use();
      default:
        return std::make_unique<tdbToolHolder>(Below(5));
    }
  }

  // Hangs a part on `parent`, or, on a use of a component, sometimes on one of its members: these
  // are told by chains of names, which have to be unique.
  void Grow(tdbCompositeItem& parent, int depth) {
    std::unique_ptr<tdbItem> part = Part();
    part->SetName(Name());
    part->SetPos(Placement());
    // The element of a component has no place for parameters.
    if (part->GetCode().empty() && Below(3) == 0)
      part->SetParam("P", std::to_string(Below(10)).c_str());
    tdbItem* added = part.release();
    tdbCompositeItem* place = &parent;
    if (unique_names_ && parent.GetCode() == "K-1" && Below(2) == 0) {
      place = dynamic_cast<tdbCompositeItem*>(parent.GetItem(0));
    }
    place->AddItem(added);
    auto* group = dynamic_cast<tdbCompositeItem*>(added);
    for (int i = depth < 5 ? Below(3) : 0; group != nullptr && i > 0; --i) Grow(*group, depth + 1);
  }

  std::mt19937 random_;
  bool unique_names_;
  int count_ = 0;
};

// Parts of one name make the tree ambiguous: then the text alone must come back.
TEST(RoundTrip, OfGeneratedTrees) {
  for (unsigned seed = 0; seed < 600; ++seed) {
    SCOPED_TRACE(seed);
    const bool unique_names = seed % 2 == 0;
    const tdbTool tool = TreeGenerator(seed, unique_names).Tool();
    const std::string text = xml_of(tool, kGoldenPaths);
    const auto read = tool_from(text, &golden_components(), kGoldenPaths);
    EXPECT_EQ(xml_of(*read, kGoldenPaths), text);
    EXPECT_FALSE(read->HasError()) << read->GetErrs().front().message;
    read->SetCode("T");
    EXPECT_TRUE(*read == tool || !unique_names);
  }
}

}  // namespace
}  // namespace tooldb

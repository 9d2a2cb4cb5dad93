#include "tooldb/cutting_conditions.h"

#include <gtest/gtest.h>

namespace {

template <class Cond>
class CuttingConditions : public testing::Test {};
using BothKinds = testing::Types<tdbCutCond, tdbTurningCutCond>;
TYPED_TEST_SUITE(CuttingConditions, BothKinds);

TYPED_TEST(CuttingConditions, TheSecondOfTwoCriteriaAsksForOptimisation) {
  for (const bool limit : {false, true}) {
    TypeParam cond;
    EXPECT_FALSE(cond.RequiresAnyCutCondition());
    (limit ? cond.GetOptimPower().limited : cond.GetOptimPower().optimized) = true;
    for (const int criteria : {0, 1, 2, 3}) {
      cond.SetOptimizationCriteria(criteria);
      for (const int other : {-1, 4, 7}) cond.SetOptimizationCriteria(other);
      EXPECT_EQ(cond.GetOptimizationCriteria(), criteria);
      EXPECT_EQ(cond.RequiresCutConditionOpti(), criteria >= 2);
      EXPECT_EQ(cond.RequiresAnyCutCondition(), criteria >= 2);
    }
    cond.ClearOptimizationCriteria();
    EXPECT_EQ(cond.GetOptimizationCriteria(), 0);
  }
}

}  // namespace

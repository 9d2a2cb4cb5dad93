#include "tooldb/cutting_conditions.h"

#include <gtest/gtest.h>

namespace {

TEST(CuttingConditions, TheSecondOfTwoCriteriaAsksForOptimisation) {
  const auto check = [](auto cond, bool limit) {
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
  };
  for (const bool limit : {false, true}) {
    check(tdbCutCond(), limit);
    check(tdbTurningCutCond(), limit);
  }
}

}  // namespace

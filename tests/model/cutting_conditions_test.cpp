#include "tooldb/cutting_conditions.h"

#include <gtest/gtest.h>

namespace {

template <class Cond>
class CuttingConditions : public testing::Test {};
using BothKinds = testing::Types<tdbCutCond, tdbTurningCutCond>;
TYPED_TEST_SUITE(CuttingConditions, BothKinds);

TYPED_TEST(CuttingConditions, CriteriaAreTwoFlags) {
  TypeParam cond;
  EXPECT_FALSE(cond.RequiresAnyCutCondition());
  EXPECT_EQ(cond.GetOptimizationCriteria(), 0);
  for (const int criteria : {0, 1, 2, 3}) {
    cond.SetOptimizationCriteria(criteria);
    EXPECT_EQ(cond.GetOptimizationCriteria(), criteria);
    for (const int other : {-1, 4, 7}) cond.SetOptimizationCriteria(other);
    EXPECT_EQ(cond.GetOptimizationCriteria(), criteria);
  }
  cond.ClearOptimizationCriteria();
  EXPECT_EQ(cond.GetOptimizationCriteria(), 0);
}

TYPED_TEST(CuttingConditions, OnlyTheSecondCriterionAsksForOptimisation) {
  for (const bool limit : {false, true}) {
    TypeParam cond;
    (limit ? cond.GetOptimPower().limited : cond.GetOptimPower().optimized) = true;
    cond.SetOptimizationCriteria(1);
    EXPECT_FALSE(cond.RequiresCutConditionOpti());
    cond.SetOptimizationCriteria(2);
    EXPECT_TRUE(cond.RequiresCutConditionOpti());
    EXPECT_TRUE(cond.RequiresAnyCutCondition());
  }
}

}  // namespace

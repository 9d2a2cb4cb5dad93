#pragma once

#include <gtest/gtest.h>

#include <string>

/// Names an instance of a table-driven test by the `name` of its row.
template <class Row>
std::string row_name(const testing::TestParamInfo<Row>& row) {
  return std::string(row.param.name);
}

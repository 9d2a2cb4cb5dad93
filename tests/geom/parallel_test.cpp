#include "geom/parallel.h"

#include <gtest/gtest.h>
#include <tbb/global_control.h>

#include <cmath>
#include <string>

#include "geom/silhouette.h"
#include "geom/stl.h"
#include "geom/turning_profile.h"
#include "tests/geom/meshes.h"

namespace tooldb {
namespace {

template <class T>
std::string bytes(const std::vector<T>& list) {
  return {reinterpret_cast<const char*>(list.data()), list.size() * sizeof(T)};
}

std::vector<std::string> results() {
  Polyline wave;
  for (int i = 0; i <= 400; ++i) wave.push_back({20 + std::sin(i * 0.1), i * 0.1});
  const Mesh mesh = soup(30000, 4, 5);
  const std::string text = stl_text(mesh, "soup");
  MemoryBytes source(text);
  std::string error;
  VexaTurningProfile section(0.01);
  section.Add(shaken(revolved(wave), 1e-4));
  std::vector<Polyline> contours;
  EXPECT_TRUE(section.Compute(contours, {}));
  return {bytes(revolved(wave, 1e-4)), bytes(silhouette(mesh, 0.01)),
          bytes(*read_stl(source, error)), bytes(contours.at(0))};
}

TEST(Parallel, OneThreadAndManyGiveTheSameBytes) {
  const auto many = results();
  const tbb::global_control one(tbb::global_control::max_allowed_parallelism, 1);
  EXPECT_TRUE(results() == many);
}

}  // namespace
}  // namespace tooldb

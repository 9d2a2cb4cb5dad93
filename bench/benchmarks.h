#pragma once

#include <vector>

#include "bench/harness.h"

/// @file
/// Every group of figures, named by the job that a user does.

namespace bench {

std::vector<Figure> bench_read(const Options& options);
std::vector<Figure> bench_documents(const Options& options);
std::vector<Figure> bench_durable_changes(const Options& options);
std::vector<Figure> bench_bulk_changes(const Options& options);
std::vector<Figure> bench_lookup(const Options& options);
std::vector<Figure> bench_sort(const Options& options);
std::vector<Figure> bench_memory(const Options& options);
std::vector<Figure> bench_meshes(const Options& options);
std::vector<Figure> bench_stl(const Options& options);
std::vector<Figure> bench_outlines(const Options& options);
std::vector<Figure> bench_program(const Options& options);

}  // namespace bench

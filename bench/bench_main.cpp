#include <array>
#include <cstdio>
#include <exception>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string_view>

#include "bench/benchmarks.h"

namespace {

using bench::Figure;

struct Group {
  std::string_view name;
  bench::Benchmark run;
};

constexpr auto kGroups = std::to_array<Group>({
    {"read", bench::bench_read},
    {"documents", bench::bench_documents},
    {"durable", bench::bench_durable_changes},
    {"bulk", bench::bench_bulk_changes},
    {"lookup", bench::bench_lookup},
    {"sort", bench::bench_sort},
    {"meshes", bench::bench_meshes},
    {"stl", bench::bench_stl},
    {"outlines", bench::bench_outlines},
    {"memory", bench::bench_memory},
    {"program", bench::bench_program},
});

constexpr const char* kUsage =
    "usage: tooldb_bench [--quick] [--only GROUP] [--rounds N] [--json FILE]\n"
    "                    [--scratch FOLDER] [--program FILE]\n"
    "Prints every figure beside its floor; the ratio is the median of the rounds' ratios.\n"
    "Groups: read documents durable bulk lookup sort meshes stl outlines memory program\n";

void print(const Figure& f) {
  std::printf("%-62s %15s %11.3f %11.3f %-3s %7.2f %6.2f  %s\n", f.operation.c_str(),
              f.size.c_str(), f.ours, f.floor, f.unit.c_str(), f.ratio, f.goal,
              f.ratio <= f.goal ? "met" : "MISSED");
  std::fflush(stdout);
}

nlohmann::json as_json(const Figure& f) {
  return {{"operation", f.operation}, {"size", f.size},          {"ours", f.ours},
          {"floor", f.floor},         {"unit", f.unit},          {"ratio", f.ratio},
          {"goal", f.goal},           {"met", f.ratio <= f.goal}};
}

}  // namespace

int main(int argc, char** argv) try {
  bench::Options options;
  options.scratch = std::filesystem::temp_directory_path();
  std::string json_path;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    const auto value = [&]() -> std::string {
      if (++i >= argc)
        throw std::invalid_argument("a value is missing after " + std::string(argument));
      return argv[i];
    };
    if (argument == "--quick") {
      options.quick = true;
      options.rounds = 3;
    } else if (argument == "--only") {
      options.only = value();
    } else if (argument == "--rounds") {
      options.rounds = std::stoi(value());
    } else if (argument == "--json") {
      json_path = value();
    } else if (argument == "--scratch") {
      options.scratch = value();
    } else if (argument == "--program") {
      options.program = value();
    } else {
      std::fputs(kUsage, argument == "--help" ? stdout : stderr);
      return argument == "--help" ? 0 : 2;
    }
  }
  std::printf("%-62s %15s %11s %11s %-3s %7s %6s\n", "operation / floor", "size", "ours", "floor",
              "", "ratio", "goal");
  nlohmann::json figures = nlohmann::json::array();
  for (const Group& group : kGroups) {
    if (group.name.find(options.only) == std::string_view::npos) continue;
    for (const Figure& figure : group.run(options)) {
      print(figure);
      figures.push_back(as_json(figure));
    }
  }
  if (!json_path.empty()) std::ofstream(json_path) << figures.dump(2) << '\n';
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "tooldb_bench: %s\n", error.what());
  return 1;
}

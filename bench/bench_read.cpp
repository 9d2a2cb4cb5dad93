#include <tinyxml2.h>

#include <memory>

#include "bench/benchmarks.h"
#include "bench/sample_tools.h"
#include "tooldb/tool_db.h"

namespace bench {
namespace {

double read_library(const std::filesystem::path& folder, int expected) {
  tdbToolDB db("bench", 0);
  if (!db.Init(folder.string())) throw std::runtime_error("cannot open " + folder.string());
  const double time = seconds([&db] { db.Read(); });
  if (db.GetToolCount(1) != expected) throw std::runtime_error("tools are missing");
  return time;
}

/// What any reader must do: list the folder, read each file, parse it.
double parse_files(const std::filesystem::path& folder) {
  return seconds([&folder] {
    std::vector<std::filesystem::path> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      names.push_back(entry.path());
    }
    for (const auto& name : names) {
      const FileBytes text = read_file(name);
      tinyxml2::XMLDocument document;
      document.Parse(text.data.get(), text.size);
      keep(document.RootElement());
    }
  });
}

double look_up_each(const std::filesystem::path& folder, int count) {
  tdbToolDB db("bench", 0);
  db.Init(folder.string());
  return cpu_seconds([&db, count] {
    for (int i = 0; i < count; ++i) {
      const std::unique_ptr<tdbTool> tool(db.GetTool(i, 2));
      keep(tool.get());
    }
  });
}

}  // namespace

std::vector<Figure> bench_read(const Options& options) {
  const int small = options.quick ? 300 : 10000;
  const int large = 10 * small;
  const ScratchFolder scratch(options);
  const auto small_folder = scratch.Path() / "small";
  const auto large_folder = scratch.Path() / "large";
  make_library(small_folder, small);
  make_library(large_folder, large);

  std::vector<Figure> figures;
  figures.push_back(compare(
      {.operation = "Read a folder / list, read and parse its files",
       .size = std::to_string(small) + " tools",
       .goal = 1.3},
      options.rounds, [&] { return read_library(small_folder, small); },
      [&] { return parse_files(small_folder); }));
  figures.push_back(compare(
      {.operation = "Read a folder / one of a tenth",
       .size = std::to_string(large) + " tools",
       .goal = 10.5},
      options.rounds, [&] { return read_library(large_folder, large); },
      [&] { return read_library(small_folder, small); }));
  const int look_ups = options.quick ? 100 : 1000;
  const auto few_folder = scratch.Path() / "few";
  const auto many_folder = scratch.Path() / "many";
  make_library(few_folder, look_ups);
  make_library(many_folder, 10 * look_ups);
  figures.push_back(compare(
      {.operation = "Each tool from the folder by position / a tenth of them",
       .size = std::to_string(10 * look_ups) + " tools",
       .goal = 11},
      options.rounds, [&] { return look_up_each(many_folder, 10 * look_ups); },
      [&] { return look_up_each(few_folder, look_ups); }));
  return figures;
}

std::vector<Figure> bench_memory(const Options& options) {
  const int count = options.quick ? 2000 : 100000;
  std::size_t file_bytes = 0;
  const std::size_t before = allocated_bytes();
  tdbToolDB db("bench", 1);
  for (int i = 0; i < count; ++i) {
    auto tool = sample_tool(i);
    std::string text;
    tool->WriteXml(text, {});
    file_bytes += text.size();
    if (db.AddTool(tool.get(), false)) static_cast<void>(tool.release());
  }
  Figure figure{.operation = "Memory of tools held / bytes of their files",
                .size = std::to_string(count) + " tools",
                .goal = 1.5,
                .unit = "MB"};
  figure.ours = static_cast<double>(allocated_bytes() - before) / 1e6;
  figure.floor = static_cast<double>(file_bytes) / 1e6;
  figure.ratio = figure.ours / figure.floor;
  return {figure};
}

}  // namespace bench

#include <fcntl.h>
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <unordered_map>

#include "bench/benchmarks.h"
#include "bench/sample_tools.h"
#include "tooldb/tool_db.h"
#include "tooldb/util.h"

namespace bench {
namespace {

void check(bool done) {
  if (!done) throw std::runtime_error("an operation of the database failed");
}

void add(tdbToolDB& db, std::unique_ptr<tdbTool> tool, bool replace) {
  check(db.AddTool(tool.get(), replace));
  static_cast<void>(tool.release());
}

/// The least a durable write must do: temporary file, flush, rename, flush of the folder.
void write_durably(const std::filesystem::path& folder, const std::string& name,
                   const std::string& bytes) {
  const auto temporary = folder / "floor.tmp";
  const int file = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  check(file >= 0 && write(file, bytes.data(), bytes.size()) >= 0 && fsync(file) == 0 &&
        close(file) == 0);
  std::filesystem::rename(temporary, folder / name);
  const int directory = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  check(directory >= 0 && fsync(directory) == 0 && close(directory) == 0);
}

/// One durable change per tool, of `count` tools in a folder of its own.
class DurableChange {
 public:
  using Change = void (*)(tdbToolDB& db, tdbTool& tool);

  DurableChange(const Options& options, int count) : options_(options), count_(count) {
    for (int i = 0; i < count; ++i) texts_.push_back(sample_text(i));
  }

  double Add() const {
    const ScratchFolder folder(options_);
    tdbToolDB db("bench", 0);
    check(db.Init(folder.Text()));
    std::vector<std::unique_ptr<tdbTool>> tools;
    for (int i = 0; i < count_; ++i) tools.push_back(sample_tool(i));
    return seconds([&] {
      for (auto& tool : tools) add(db, std::move(tool), false);
    });
  }

  double Each(Change change) const {
    const ScratchFolder folder(options_);
    make_library(folder.Path(), count_);
    tdbToolDB db("bench", 0);
    check(db.Init(folder.Text()) && db.Read());
    return seconds([&] {
      for (int i = 0; i < count_; ++i) change(db, *db.GetTool(i, 1));
    });
  }

  double Floor() const {
    const ScratchFolder folder(options_);
    return seconds([&] {
      for (int i = 0; i < count_; ++i) {
        write_durably(folder.Path(), sample_code(i), texts_[static_cast<std::size_t>(i)]);
      }
    });
  }

 private:
  const Options& options_;
  int count_;
  std::vector<std::string> texts_;
};

double write_plainly(const Options& options, const std::vector<std::string>& texts) {
  const ScratchFolder folder(options);
  return seconds([&] {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      write_file(folder.Path() / (sample_code(static_cast<int>(i)) + ".ktf"), texts[i]);
    }
  });
}

}  // namespace

std::vector<Figure> bench_durable_changes(const Options& options) {
  const int count = options.quick ? 20 : 200;
  const DurableChange changes(options, count);
  const auto figure = [&](const char* operation, const Work& ours) {
    return compare({.operation = std::string(operation) + " / temporary file, flushes and rename",
                    .size = std::to_string(count) + " tools",
                    .goal = 1.2},
                   options.rounds, ours, [&changes] { return changes.Floor(); });
  };
  return {figure("AddTool", [&] { return changes.Add(); }),
          figure("UpdateTool",
                 [&] {
                   return changes.Each(
                       [](tdbToolDB& db, tdbTool& tool) { check(db.UpdateTool(&tool)); });
                 }),
          figure("RenameTool", [&] {
            return changes.Each([](tdbToolDB& db, tdbTool& tool) {
              const std::string previous = tool.GetCode();
              tool.SetCode("R" + previous);
              check(db.RenameTool(previous, &tool));
            });
          })};
}

std::vector<Figure> bench_bulk_changes(const Options& options) {
  const int count = options.quick ? 200 : 10000;
  std::vector<std::string> texts;
  for (int i = 0; i < count; ++i) texts.push_back(sample_text(i));
  const ScratchFolder sources(options);
  make_library(sources.Path() / "library", count);
  const auto document = sources.Path() / "export.xml";
  write_file(document, export_document(count));

  tdbToolDB source("source", 0);
  check(source.Init((sources.Path() / "library").string()) && source.Read());
  const auto figure = [&](const char* operation, const Work& ours) {
    return compare({.operation = std::string(operation) + " / plain write of the same files",
                    .size = std::to_string(count) + " tools",
                    .goal = 2},
                   options.rounds, ours, [&] { return write_plainly(options, texts); });
  };
  const auto into_new_folder = [&](auto&& import) {
    const ScratchFolder folder(options);
    tdbToolDB db("bench", 0);
    check(db.Init(folder.Text()));
    return seconds([&] { check(import(db)); });
  };
  return {
      figure("Import",
             [&] { return into_new_folder([&](tdbToolDB& db) { return db.Import(&source); }); }),
      figure("ImportFromFile",
             [&] {
               return into_new_folder(
                   [&](tdbToolDB& db) { return db.ImportFromFile(document.c_str(), {}); });
             }),
      figure("Export", [&] {
        const ScratchFolder folder(options);
        return seconds([&] { check(source.Export(folder.Text(), "exported", {})); });
      })};
}

namespace {

std::string normal_form(const std::string& code) {
  std::string normal = tdbUtil::trim_left(tdbUtil::trim_right(code, " "), " ");
  tdbUtil::to_upper(normal);
  return normal;
}

std::vector<std::unique_ptr<tdbTool>> new_tools(const std::vector<std::string>& codes) {
  std::vector<std::unique_ptr<tdbTool>> tools;
  for (const std::string& code : codes) tools.push_back(std::make_unique<tdbTool>(code));
  return tools;
}

}  // namespace

std::vector<Figure> bench_lookup(const Options& options) {
  std::vector<Figure> figures;
  for (const int count : {options.quick ? 1000 : 10000, options.quick ? 10000 : 100000}) {
    tdbToolDB db("bench", 1);
    for (int i = 0; i < count; ++i) add(db, sample_tool(i), false);
    std::unordered_map<std::string, tdbTool*> index;
    std::vector<std::string> codes;
    for (int i = 0; i < count; ++i) {
      codes.push_back(sample_code(static_cast<int>((i * 7919LL) % count)));
      index[codes.back()] = db.GetToolByCode(codes.back(), 1);
    }
    figures.push_back(compare(
        {.operation = "Look a code up / hash look-up of the normal form",
         .size = std::to_string(count) + " tools",
         .goal = 3},
        options.rounds,
        [&] {
          return cpu_seconds([&] {
            for (const std::string& code : codes) {
              keep(db.GetToolByCode(code, 1));
            }
          });
        },
        [&] {
          return cpu_seconds([&] {
            for (const std::string& code : codes) keep(index.find(normal_form(code))->second);
          });
        }));
    std::unordered_map<std::string, std::unique_ptr<tdbTool>> owned;
    for (const std::string& code : codes) owned[code] = std::make_unique<tdbTool>(code);
    figures.push_back(compare(
        {.operation = "AddTool replacing, in memory / the same in a hash table",
         .size = std::to_string(count) + " tools",
         .goal = 3},
        options.rounds,
        [&] {
          auto tools = new_tools(codes);
          return cpu_seconds([&] {
            for (auto& tool : tools) add(db, std::move(tool), true);
          });
        },
        [&] {
          auto tools = new_tools(codes);
          return cpu_seconds([&] {
            for (auto& tool : tools) {
              auto& place = owned.find(normal_form(tool->GetCode()))->second;
              place = std::move(tool);
            }
          });
        }));
  }
  return figures;
}

namespace {

struct SortKey {
  int key;
  const char* name;
  bool (*less)(const tdbTool* a, const tdbTool* b);
};

constexpr SortKey kSortKeys[] = {
    {0, "code",
     [](const tdbTool* a, const tdbTool* b) {
       const long number_a = std::strtol(a->GetCode().c_str(), nullptr, 10);
       const long number_b = std::strtol(b->GetCode().c_str(), nullptr, 10);
       if (number_a != 0 && number_b != 0) return number_a < number_b;
       return strcasecmp(a->GetCode().c_str(), b->GetCode().c_str()) < 0;
     }},
    {2, "type", [](const tdbTool* a, const tdbTool* b) { return a->GetType() < b->GetType(); }},
    {3, "description",
     [](const tdbTool* a, const tdbTool* b) {
       return std::string_view(a->GetDescr()) < std::string_view(b->GetDescr());
     }},
    {4, "trace colour",
     [](const tdbTool* a, const tdbTool* b) { return a->GetTraceColor() < b->GetTraceColor(); }},
    {5, "length",
     [](const tdbTool* a, const tdbTool* b) { return a->GetLength() < b->GetLength(); }},
    {6, "offset X",
     [](const tdbTool* a, const tdbTool* b) { return a->GetOffsetX() < b->GetOffsetX(); }},
    {7, "diameter",
     [](const tdbTool* a, const tdbTool* b) { return a->GetDiameter() < b->GetDiameter(); }},
    {8, "subtype",
     [](const tdbTool* a, const tdbTool* b) { return a->GetSubType() < b->GetSubType(); }},
    {9, "offset Y",
     [](const tdbTool* a, const tdbTool* b) { return a->GetOffsetY() < b->GetOffsetY(); }},
};

/// Every tool once, in an order that no key gives.
std::vector<tdbTool*> shuffled(int count, std::vector<std::unique_ptr<tdbTool>>& owner) {
  std::vector<tdbTool*> order;
  for (int i = 0; i < count; ++i) {
    owner.push_back(sample_tool(static_cast<int>((i * 7919LL) % count)));
    owner.back()->Update();
    order.push_back(owner.back().get());
  }
  return order;
}

}  // namespace

std::vector<Figure> bench_sort(const Options& options) {
  const int count = options.quick ? 5000 : 100000;
  std::vector<std::unique_ptr<tdbTool>> owner;
  const std::vector<tdbTool*> order = shuffled(count, owner);
  std::vector<Figure> figures;
  for (const SortKey& key : kSortKeys) {
    figures.push_back(compare(
        {.operation = std::string("Sort by ") + key.name + " / stable_sort of pointers",
         .size = std::to_string(count) + " tools",
         .goal = 1},
        options.rounds,
        [&] {
          tdbToolDB db("bench", 1);
          for (tdbTool* tool : order) check(db.AddTool(tool, false));
          const double time = cpu_seconds([&] { db.Sort(key.key, true); });
          for (tdbTool* tool : order) check(db.RemoveTool(tool));
          return time;
        },
        [&] {
          std::vector<tdbTool*> tools = order;
          return cpu_seconds([&] { std::stable_sort(tools.begin(), tools.end(), key.less); });
        }));
  }
  return figures;
}

}  // namespace bench

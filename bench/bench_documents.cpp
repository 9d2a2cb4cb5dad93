#include <malloc.h>
#include <sys/wait.h>
#include <tinyxml2.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "bench/benchmarks.h"
#include "bench/sample_tools.h"
#include "tooldb/tool_db.h"
#include "tooldb/tool_parts.h"

namespace bench {
namespace {

double import(const std::string& text, int expected) {
  tdbToolDB db("bench", 1);
  const double time = seconds([&] { db.ImportFromXml(text.c_str(), {}); });
  if (db.GetToolCount(1) != expected) throw std::runtime_error("tools are missing");
  return time;
}

/// A size of this process from its status, in bytes.
std::size_t process_bytes(std::string_view name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name)) return std::stoul(line.substr(name.size())) * 1024;
  }
  throw std::runtime_error("the system does not tell " + std::string(name));
}

/// Lets the largest resident size begin anew.
void forget_peak() {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << 5;
}

struct ImportMemory {
  double beside_tools = 0;
  double document = 0;
};

ImportMemory measure_import(int count) {
  const std::string text = export_document(count);
  forget_peak();
  const std::size_t allocated = allocated_bytes();
  const std::size_t resident = process_bytes("VmRSS:") - text.size();
  tdbToolDB db("bench", 1);
  db.ImportFromXml(text.c_str(), {});
  const std::size_t tools = allocated_bytes() - allocated;
  return {static_cast<double>(process_bytes("VmHWM:") - resident - tools),
          static_cast<double>(text.size())};
}

/// Memory of one import, document included, beside the tools that it makes; measured in a process
/// of its own.
Figure import_memory(int count) {
  int channel[2];
  if (pipe(channel) != 0) throw std::runtime_error("no pipe");
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    const ImportMemory memory = measure_import(count);
    _exit(write(channel[1], &memory, sizeof memory) == sizeof memory ? 0 : 1);
  }
  close(channel[1]);
  ImportMemory memory;
  const bool received = read(channel[0], &memory, sizeof memory) == sizeof memory;
  close(channel[0]);
  waitpid(child, nullptr, 0);
  if (!received) throw std::runtime_error("the measuring process failed");
  return {.operation = "Peak memory of an import beside its tools / the document",
          .size = std::to_string(count) + " tools",
          .ours = memory.beside_tools / 1e6,
          .floor = memory.document / 1e6,
          .ratio = memory.beside_tools / memory.document,
          .goal = 2,
          .unit = "MB"};
}

void append_printed_short(std::string& out, double value) {
  char buffer[64];
  out.append(buffer, static_cast<std::size_t>(std::snprintf(buffer, sizeof buffer, "%g", value)));
}

void append_printed_fixed(std::string& out, double value) {
  char buffer[400];
  out.append(buffer, static_cast<std::size_t>(std::snprintf(buffer, sizeof buffer, "%f", value)));
}

/// The numbers and texts of a tool, printed one after the other.
void print_numbers(const tdbTool& tool, std::string& out) {
  const auto print_item = [&out](const tdbItem& item) {
    const auto pos = item.GetPos();
    const auto shape = item.GetShapePos();
    for (int row = 0; row < 3; ++row) append_printed_short(out, pos(row, 3));
    for (int i = 0; i < 9; ++i) append_printed_short(out, shape(i / 4, i % 4));
    for (int i = 0; i < 4; ++i) append_printed_short(out, item.GetMaterial().red);
    out += item.GetName();
    out += item.GetProfileXml();
    for (const auto& [name, value] : item.GetParams()) out += name + value + name;
  };
  print_item(tool);
  for (int i = 0; i < tool.GetCutterCount(); ++i) print_item(*tool.GetCutter(i));
  for (int i = 0; i < tool.GetShankCount(); ++i) print_item(*tool.GetShank(i));
  for (int i = 0; i < tool.GetHolderCount(); ++i) print_item(*tool.GetHolder(i));
  for (const auto& [name, value] : tool.GetParamList()) out += name + value;
  for (const auto& offset : tool.GetOffsetParamList()) {
    for (const double v : {offset.DX, offset.DY, offset.DZ, offset.RAD}) {
      append_printed_fixed(out, v);
    }
  }
  // The limits and targets of the conditions: 37 numbers.
  for (int i = 0; i < 37; ++i) append_printed_fixed(out, tool.GetCutCond().GetVerifyFeed().maximum);
  for (int i = 0; i < 10; ++i) append_printed_short(out, tool.GetCutCond().GetDc());
  out += tool.GetDescr();
  out += tool.GetComment();
}

Figure write_document(const Options& options) {
  const int count = options.quick ? 1000 : 10000;
  tdbToolDB db("bench", 1);
  std::vector<const tdbTool*> tools;
  for (int i = 0; i < count; ++i) {
    auto tool = sample_tool(i);
    tools.push_back(tool.get());
    if (db.AddTool(tool.get(), false)) static_cast<void>(tool.release());
  }
  return compare(
      {.operation = "Write a document / print its numbers and texts",
       .size = std::to_string(count) + " tools",
       .goal = 0.5},
      options.rounds,
      [&db] {
        return cpu_seconds([&db] {
          std::string out;
          static_cast<const tdbToolDB&>(db).WriteXml(out, {});
          keep(out.data());
        });
      },
      [&tools] {
        return cpu_seconds([&tools] {
          std::string out;
          for (const tdbTool* tool : tools) print_numbers(*tool, out);
          keep(out.data());
        });
      });
}

}  // namespace

std::vector<Figure> bench_documents(const Options& options) {
  const int count = options.quick ? 2000 : 100000;
  std::vector<Figure> figures;
  figures.push_back(import_memory(count));
  {
    const std::string text = export_document(count);
    figures.push_back(compare(
        {.operation = "Import a document / parse it whole",
         .size = std::to_string(count) + " tools",
         .goal = 0.8},
        options.rounds, [&] { return import(text, count); },
        [&] {
          return seconds([&] {
            tinyxml2::XMLDocument document;
            document.Parse(text.data(), text.size());
            keep(document.RootElement());
          });
        }));
  }
  figures.push_back(write_document(options));
  return figures;
}

}  // namespace bench

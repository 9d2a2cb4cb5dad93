#include "bench/sample_tools.h"

#include <array>
#include <random>

#include "bench/harness.h"
#include "tooldb/tool_parts.h"

namespace bench {
namespace {

Transformation<double> at_height(double z) {
  Transformation<double> pos;
  pos(2, 3) = z;
  return pos;
}

constexpr std::array kKinds{0, 1, 3, 4, 5, 10, 15, 26};
constexpr std::array kCutters{0, 1, 2, 3, 9, 4, 13, 23};

std::string number_text(double value) {
  std::string text = std::to_string(value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::unique_ptr<tdbToolHolder> custom_holder(double height, double radius) {
  auto holder = std::make_unique<tdbToolHolder>(2);
  std::string profile;
  double y = 0;
  for (int step = 0; step < 12; ++step) {
    const double next = y + height / 12;
    const std::string at = number_text(radius + step) + " ";
    profile += "<LINE><START>" + at + number_text(y) + "</START><END>" + at + number_text(next) +
               "</END></LINE>";
    y = next;
  }
  holder->SetProfileXml(profile.c_str());
  return holder;
}

}  // namespace

std::string sample_code(int number) { return "T" + std::to_string(100000 + number); }

std::unique_ptr<tdbTool> sample_tool(int number) {
  std::mt19937 random(static_cast<unsigned>(number));
  const auto upto = [&random](int n) {
    return static_cast<int>(random() % static_cast<unsigned>(n));
  };
  const auto kind = static_cast<std::size_t>(upto(static_cast<int>(kKinds.size())));
  const double diameter = 6 + 0.25 * upto(60);
  const double reach = 30 + upto(70);

  auto tool = std::make_unique<tdbTool>(sample_code(number), "Tool " + std::to_string(number));
  tool->SetType(upto(10));
  tool->SetDescr(("Solid carbide end mill D" + number_text(diameter) + ", reach " +
                  number_text(reach) + " mm, coated, long series")
                     .c_str());
  tool->SetComment("Check runout below 0.01 mm before use; balanced with its holder to G2.5.");
  tool->SetTraceColor(upto(20));
  for (const char* name : {"VENDOR", "PRODUCT", "GRADE", "COATING", "MATERIAL", "LOCATION"}) {
    tool->AddParam(name, (std::string(name) + "-" + std::to_string(upto(1000))).c_str());
  }
  for (int i = 0; i < 3; ++i) {
    OFFSET_VALUE offset;
    offset.index = i + 1;
    offset.DZ = 0.001 * upto(1000);
    offset.RAD = diameter / 2;
    tool->AddOffsetParam(offset);
  }
  tool->GetCutCond().SetDc(diameter);
  tool->GetCutCond().SetNumberOfInsert(1 + upto(6));
  tool->GetCutCond().GetVerifyFeed().Ini(true, 50, 4000);

  auto* cutter = new tdbToolCutter(kCutters[kind]);
  auto* shank = new tdbToolShank(0);
  auto* cutting_tool = new tdbCuttingTool(cutter, shank, kKinds[kind]);
  cutting_tool->SetName("Cutting tool");
  cutting_tool->InitParams();
  cutter->SetName("Cutter");
  cutter->SetParam("DIAMETER", number_text(diameter).c_str());
  cutter->SetParam("HEIGHT", "18");
  for (const char* name : {"DIAMETER1", "DIAMETER3"}) {
    if (cutter->GetParam(name, nullptr) == nullptr) continue;
    cutter->SetParam(name, number_text(diameter / 2).c_str());
  }
  shank->SetName("Shank");
  for (const char* name : {"DIAMETER", "DIAMETER2"}) {
    shank->SetParam(name, number_text(diameter).c_str());
  }
  shank->SetParam("ANGLE2", "0");
  shank->SetParam("HEIGHT", number_text(reach + 20).c_str());
  cutting_tool->SetPos(at_height(-reach));
  tool->AddItem(cutting_tool);
  auto holder = custom_holder(60, 20);
  holder->SetName("Collet chuck");
  if (upto(2) == 0) {
    auto extension = std::make_unique<tdbToolHolder>(1);
    extension->SetName("Extension");
    extension->SetParam("DIAMETER", "25");
    extension->SetParam("HEIGHT", "100");
    extension->SetParam("DIAMETER2", "32");
    holder->AddItem(extension.release());
  }
  tool->AddHolder(holder.release());
  return tool;
}

std::string sample_text(int number) {
  std::string text;
  sample_tool(number)->WriteXml(text, {});
  return text;
}

void make_library(const std::filesystem::path& folder, int count) {
  std::filesystem::create_directories(folder);
  for (int i = 0; i < count; ++i) write_file(folder / (sample_code(i) + ".ktf"), sample_text(i));
}

std::string export_document(int count) {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<TOOLDB VER=\"0\">\n";
  for (int i = 0; i < count; ++i) {
    std::string tool = sample_text(i);
    tool.insert(tool.find(' '), " CODE=\"" + sample_code(i) + "\"");
    text += tool;
  }
  return text + "</TOOLDB>\n";
}

}  // namespace bench

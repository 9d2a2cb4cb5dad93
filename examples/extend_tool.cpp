// Puts an extension between a tool and its holder, and adds the result as another tool.
//
//   extend_tool TOOLS COMPONENTS CODE NEW_CODE LENGTH DIAMETER
//
// LENGTH and DIAMETER of the extension are in the tool's unit.

#include <charconv>
#include <iostream>
#include <memory>
#include <string>

#include "tooldb/tooldb.h"

namespace {

int report(void*, const tdbToolDB*, tdbError* error) {
  std::cerr << "extend_tool: " << error->message << '\n';
  return 0;
}

Transformation<double> raised(double z) {
  Transformation<double> placement;
  placement(2, 3) = z;
  return placement;
}

/// Whatever the user's locale says; 0 for a text that is no number.
double number(const std::string& text) {
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

/// The extension's body; its lower end is the origin.
std::unique_ptr<tdbToolHolder> make_extension(const char* length, const char* diameter) {
  auto extension = std::make_unique<tdbToolHolder>(0);  // a cylinder
  extension->SetName("Extension");
  extension->SetParam("DIAMETER", diameter);
  extension->SetParam("HEIGHT", length);
  extension->SetEnableSpinning(true);
  return extension;
}

/// The nose of the holder that the tool sits in, above the tool's origin; 0 without one.
double holder_nose(tdbTool& tool) {
  const tdbToolHolder* holder = tool.GetHolder(0);
  return holder == nullptr ? 0 : holder->GetAbsPos()(2, 3);
}

/// Hangs the cutting tool below a link at the nose of the extension.
bool extend(tdbTool& tool, const char* length, const char* diameter) {
  auto* cutting_tool = dynamic_cast<tdbCuttingTool*>(tool.GetItemByName("CuttingTool"));
  if (cutting_tool == nullptr) return false;
  const double nose = holder_nose(tool);
  const double tip = cutting_tool->GetAbsPos()(2, 3);
  tool.RemoveItem(cutting_tool, true);
  cutting_tool->SetPos(raised(tip - nose));

  auto link = std::make_unique<tdbFixedLink>(0);
  link->SetName("ExtensionNose");
  link->SetPos(raised(nose - number(length)));
  link->AddItem(cutting_tool);
  link->AddItem(make_extension(length, diameter).release());
  tool.AddItem(link.release());
  tool.Update();  // the length of the tool follows from where its cutter is now
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 7) {
    std::cerr << "usage: extend_tool TOOLS COMPONENTS CODE NEW_CODE LENGTH DIAMETER\n";
    return 2;
  }
  tdbToolComponentsDB components("components", 0);
  tdbToolDB tools("tools", 0);
  tools.SetErrorCallback(report, nullptr);
  if (!components.Init(argv[2]) || !components.Read() || !tools.Init(argv[1])) return 1;
  tools.LinkToolComponents(&components);
  if (!tools.Read()) return 1;

  const tdbTool* found = tools.GetToolByCode(argv[3], 1);
  if (found == nullptr) {
    std::cerr << "extend_tool: no tool " << argv[3] << '\n';
    return 1;
  }
  auto tool = std::make_unique<tdbTool>(*found);
  tool->SetCode(argv[4]);
  tool->SetName(argv[4]);
  tool->SetDescr((std::string(found->GetDescr()) + ", extended by " + argv[5]).c_str());
  if (number(argv[5]) <= 0 || !extend(*tool, argv[5], argv[6])) {
    std::cerr << "extend_tool: " << argv[3] << " cannot be extended by " << argv[5] << '\n';
    return 1;
  }
  if (!tools.AddTool(tool.get(), true)) return 1;
  const tdbTool* added = tool.release();  // the database's now
  std::cout << added->GetCode() << ": length " << added->GetLength() << '\n';
  return 0;
}

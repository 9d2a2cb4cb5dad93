// Makes an end mill in a holder and stores it: make_tool FOLDER
#include <iostream>
#include <memory>

#include "tooldb/tooldb.h"

namespace {

// A flat end mill of 10 mm: 22 mm of flutes, 72 mm long.
std::unique_ptr<tdbCuttingTool> make_end_mill() {
  auto cutter = std::make_unique<tdbToolCutter>(0);
  cutter->SetName("Cutter");
  cutter->SetParam("DIAMETER", "10");
  cutter->SetParam("HEIGHT", "22");
  auto shank = std::make_unique<tdbToolShank>(0);
  shank->SetName("Shank");
  shank->SetParam("DIAMETER", "10");
  shank->SetParam("HEIGHT", "50");
  const int type = tdbCuttingTool::GetTypeByName("MILL_FLATEND");
  auto end_mill = std::make_unique<tdbCuttingTool>(cutter.release(), shank.release(), type);
  end_mill->SetName("End mill");
  return end_mill;
}

// A cylindrical holder whose nose is `height` above the tip of the tool.
std::unique_ptr<tdbToolHolder> make_holder(double height) {
  auto holder = std::make_unique<tdbToolHolder>(0);
  holder->SetName("Chuck");
  holder->SetParam("DIAMETER", "40");
  holder->SetParam("HEIGHT", "60");
  Transformation<double> place;
  place(2, 3) = height;
  holder->SetPos(place);
  return holder;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_tool FOLDER\n";
    return 2;
  }
  auto tool = std::make_unique<tdbTool>("D10-FLAT", "End mill D10");
  tool->SetDescr("Flat end mill, 10 mm, 4 flutes");
  tool->AddParam("FLUTES", "4");
  tool->AddItem(make_end_mill().release());
  tool->AddItem(make_holder(40).release());
  tool->Update();

  tdbToolDB tools("my tools", 0);
  tdbError error;
  if (!tools.Create(argv[1]) || !tools.AddTool(tool.get(), error, true)) {
    std::cerr << "The tool was not stored. " << error.message << '\n';
    return 1;
  }
  const tdbTool* stored = tool.release();  // the database owns it now
  std::cout << "stored " << stored->GetCode() << " in " << argv[1] << '\n';
}

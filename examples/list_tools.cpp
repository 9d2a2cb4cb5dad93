// Lists the tools of a folder, widest first: list_tools FOLDER
#include <iostream>

#include "tooldb/tooldb.h"

int print_error(void*, const tdbToolDB*, tdbError* error) {
  std::cerr << error->message << '\n';
  return 0;
}

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  tdbToolDB tools("my tools", 0);
  tools.SetErrorCallback(print_error, nullptr);
  if (!tools.Init(argv[1]) || !tools.Read()) return 1;
  tools.Sort(7, false);  // by diameter, descending
  for (int i = 0; i < tools.GetToolCount(1); ++i) {
    const tdbTool* tool = tools.GetTool(i, 1);
    std::cout << tool->GetCode() << "  D" << tool->GetDiameter() << "  " << tool->GetDescr()
              << '\n';
  }
}

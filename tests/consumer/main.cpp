#include <iostream>
#include <memory>
#include <string>

#include "tooldb/tooldb.h"

// Makes a tool in memory and reads its XML: headers, linking and the run-time search path are
// right when this runs.
int main() {
  tdbToolDB db("consumer", 1);
  auto tool = std::make_unique<tdbTool>("T1");
  tool->AddCutter(new tdbToolCutter(3));
  tdbError error;
  if (!db.AddTool(tool.get(), error, false)) {
    std::cerr << error.message << '\n';
    return 1;
  }
  tool.release();
  std::string xml;
  db.WriteXml(xml, {});
  std::cout << "tooldb " TOOLDB_VERSION << ", " << xml.size() << " bytes of XML\n";
  return db.GetToolCount(1) == 1 && xml.find("<TOOL") != std::string::npos ? 0 : 1;
}

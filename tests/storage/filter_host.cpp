// A host that calls the import filter beside it, and says what came of it.
#include <cstdio>
#include <filesystem>

#include "tooldb/tool_makers.h"

int main() {
  std::string output = "untouched";
  const bool filtered = tdbFilter("in", output);
  std::printf("%d %s\n", filtered ? 1 : 0, output.c_str());
  std::printf("[%s]\n", tdbGetFilterString().c_str());
  std::printf("in %s\n", std::filesystem::current_path().filename().string().c_str());
}

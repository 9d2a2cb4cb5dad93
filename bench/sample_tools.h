#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tooldb/tool.h"

/// @file
/// Deterministic tools as real libraries hold them: cutting tool, cutter, shank, one or two
/// holders, parameters, offsets and conditions; a file of each has about 4.7 KB.

namespace bench {

std::unique_ptr<tdbTool> sample_tool(int number);
std::string sample_code(int number);
std::string sample_text(int number);
/// Writes the files of tools 0 to count-1.
void make_library(const std::filesystem::path& folder, int count);
/// An export document of tools 0 to count-1.
std::string export_document(int count);

}  // namespace bench

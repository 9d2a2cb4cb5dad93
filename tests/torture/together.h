#pragma once

#include <filesystem>

/// @file
/// Several processes at work in one folder.

namespace torture {

/// Lets writers of different tools, writers of one tool and readers loose on a folder. Prints what
/// went wrong, and returns how often something did: a tool that is lost, torn, or never was.
int work_together(const std::filesystem::path& folder);

}  // namespace torture

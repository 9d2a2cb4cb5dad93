#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

#include "apps/intake.h"

namespace tooldb {

/// How a report is printed.
struct ReportOptions {
  bool json = false;
  bool brief = false;
};

/// Adds the options --json and --brief.
void add_report_options(CLI::App& app, ReportOptions& options);

/// Prints what became of everything; entries and files that were refused are errors.
void print_report(const std::vector<IntakeFile>& files, const ReportOptions& options,
                  Console& console);

}  // namespace tooldb

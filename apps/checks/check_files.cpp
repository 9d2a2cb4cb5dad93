#include "apps/checks/check_files.h"

#include <algorithm>
#include <array>
#include <map>

#include "apps/checks/check_rules.h"
#include "apps/database_folder.h"
#include "apps/text_rules.h"

namespace tooldb {
namespace {

// Names that one system or another keeps for devices, with or without an extension.
constexpr std::array<std::string_view, 4> kDevices = {"CON", "PRN", "AUX", "NUL"};
constexpr std::array<std::string_view, 2> kNumberedDevices = {"COM", "LPT"};

std::string upper_text(std::string text) {
  tdbUtil::to_upper(text);
  return text;
}

bool is_device(const std::string& stem) {
  const std::string name = upper_text(stem.substr(0, stem.find('.')));
  if (std::ranges::find(kDevices, name) != kDevices.end()) return true;
  const bool is_numbered = name.size() == 4 && name[3] >= '1' && name[3] <= '9';
  return is_numbered &&
         std::ranges::find(kNumberedDevices, name.substr(0, 3)) != kNumberedDevices.end();
}

void check_name(const std::string& path, const std::string& stem, const std::string& code,
                Findings& findings) {
  const std::string written = tdbUtil::encoding_code(code);
  if (written != stem) {
    findings.Add(rule::kFileName, path, 0,
                 "its code '" + code + "' is written as '" + written + "', not '" + stem + "'");
  }
  if (const std::string problem = code_problem(code); !problem.empty()) {
    findings.Add(rule::kCode, path, 0, "code '" + code + "': " + problem);
  }
  if (is_device(stem) || stem.ends_with('.')) {
    findings.Add(rule::kPortability, path, 0,
                 "some systems cannot have a file named '" + stem + "'");
  }
}

}  // namespace

void check_file_names(const std::string& folder, const std::vector<std::string>& names,
                      Findings& findings) {
  std::map<std::string, std::string> paths_of_codes;  // by code as lists compare it
  for (const auto& name : names) {
    const std::string path = folder + '/' + name;
    std::string stem;
    tdbFileUtil::get_file_name(name, stem);
    const std::string code = tdbUtil::decoding_code(stem);
    check_name(path, stem, code, findings);
    const std::string key = upper_text(tdbUtil::trim_left(tdbUtil::trim_right(code, " "), " "));
    const auto [other, is_first] = paths_of_codes.emplace(key, path);
    if (!is_first) {
      findings.Add(rule::kDuplicate, path, 0,
                   "its code is that of " + other->second + ", or differs in case or blanks only");
    }
  }
}

}  // namespace tooldb

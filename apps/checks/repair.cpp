#include "apps/checks/repair.h"

#include <array>

#include "apps/checks/check_rules.h"
#include "apps/database_folder.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

struct PathParts {
  std::string folder;
  std::string stem;
  std::string extension;
};

PathParts parts_of(const std::string& path) {
  PathParts parts;
  parts.folder = path.substr(0, path.find_last_of("/\\"));
  tdbFileUtil::get_file_name(path, parts.stem);
  tdbFileUtil::get_file_extension(path, parts.extension);
  return parts;
}

/// As much of a name as leaves room for a number and another extension, cut between characters.
std::string shortened(const std::string& name) {
  constexpr std::size_t kRoom = 235;
  if (name.size() <= kRoom) return name;
  std::size_t end = kRoom;
  while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) --end;
  return name.substr(0, end);
}

bool is_taken(const std::string& path) {
  return tdbFileUtil::file_exists(path) || tdbFileUtil::directory_exists(path);
}

std::string rename_to_code(const Finding& finding) {
  const PathParts file = parts_of(finding.path);
  const std::string code = tdbUtil::decoding_code(file.stem);
  const std::string path = file.folder + '/' + tdbUtil::encoding_code(code) + file.extension;
  if (is_taken(path)) return {};
  tdbFileUtil::rename_file(finding.path, path);
  return "renamed to " + path;
}

/// A name in lost+found that neither a file nor its reason has yet, without extension.
std::string free_stem(const std::string& folder, const PathParts& file) {
  const std::string stem = folder + '/' + shortened(file.stem);
  std::string free = stem;
  for (int n = 2; is_taken(free + file.extension) || is_taken(free + ".txt"); ++n) {
    free = stem + '.' + std::to_string(n);
  }
  return free;
}

/// The reason is written first, so that no moved file is without one.
std::string move_away(const Finding& finding) {
  static_cast<void>(file_bytes(finding.path));  // raises: a file that the disk withholds stays
  const PathParts file = parts_of(finding.path);
  const std::string folder = file.folder + '/' + kLostAndFound;
  tdbFileUtil::create_directory(folder);
  const std::string stem = free_stem(folder, file);
  tdbFileUtil::write_file(stem + ".txt", finding.message + "\n" + finding.path + "\n");
  tdbFileUtil::rename_file(finding.path, stem + file.extension);
  return "moved to " + stem + file.extension;
}

struct Remedy {
  std::string_view rule;
  /// What was done; empty when nothing could be. Raises when that fails.
  std::string (*apply)(const Finding& finding);
};

constexpr std::array<Remedy, 2> kRemedies = {
    {{rule::kFileName.name, rename_to_code}, {rule::kUnreadable.name, move_away}}};

}  // namespace

void repair(Findings& findings) {
  for (Finding& finding : findings.All()) {
    for (const Remedy& remedy : kRemedies) {
      if (finding.rule != remedy.rule) continue;
      try {
        finding.repair = remedy.apply(finding);
      } catch (const tdbError& error) {
        finding.message += "; it cannot be repaired: " + error.message;
      } catch (const Failure& failure) {
        finding.message += std::string("; it cannot be repaired: ") + failure.what();
      }
    }
  }
}

}  // namespace tooldb

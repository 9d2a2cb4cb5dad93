#include "tooldb/xml/model_path.h"

#include <algorithm>
#include <array>
#include <optional>

#include "tooldb/model/text.h"

namespace tooldb {
namespace {

constexpr std::string_view kSeparators = "/\\";

enum class EntryKind { kFolder, kFolderWithoutSubfolders, kSingleFile, kAbsoluteFolder };

struct Marker {
  std::string_view text;
  EntryKind kind;
};
constexpr auto kMarkers = std::to_array<Marker>({
    {"__nosubfolders__", EntryKind::kFolderWithoutSubfolders},
    {"__files__", EntryKind::kSingleFile},
    {"__absfiles__", EntryKind::kAbsoluteFolder},
});

struct Entry {
  EntryKind kind;
  std::string_view path;  // of a folder, without separators at its end
};

bool is_separator(char c) { return kSeparators.find(c) != std::string_view::npos; }

bool is_absolute(std::string_view path) {
  return (!path.empty() && is_separator(path[0])) || (path.size() > 1 && path[1] == ':');
}

bool same_path(std::string_view a, std::string_view b) {
  return std::ranges::equal(
      a, b, [](char x, char y) { return x == y || (is_separator(x) && is_separator(y)); });
}

std::string_view without_end_separators(std::string_view path) {
  return path.substr(0, path.find_last_not_of(kSeparators) + 1);
}

Entry parse_entry(std::string_view text) {
  text = trimmed(text);
  for (const auto& [marker, kind] : kMarkers) {
    if (text.starts_with(marker)) return {kind, trimmed(text.substr(marker.size()))};
    if (!text.ends_with(marker)) continue;
    text.remove_suffix(marker.size());
    return {kind, trimmed(text)};
  }
  return {EntryKind::kFolder, text};
}

// The path below a folder; nothing when the path does not lie there.
std::optional<std::string_view> below(std::string_view folder, std::string_view path) {
  const std::string_view stem = without_end_separators(folder);
  if (folder.empty() || path.size() <= stem.size() || !is_separator(path[stem.size()]) ||
      !same_path(stem, path.substr(0, stem.size()))) {
    return std::nullopt;
  }
  const auto rest = path.find_first_not_of(kSeparators, stem.size());
  if (rest == std::string_view::npos) return std::nullopt;
  return path.substr(rest);
}

std::string_view file_name(std::string_view path) {
  return path.substr(path.find_last_of(kSeparators) + 1);
}

std::string joined(std::string_view folder, std::string_view rest) {
  const std::string_view stem = without_end_separators(folder);
  const bool back =
      folder.find('\\') != std::string_view::npos && folder.find('/') == std::string_view::npos;
  return std::string(stem) + (back ? '\\' : '/') + std::string(rest);
}

// What an entry stores for a path that it covers.
std::optional<std::string_view> stored_by(const Entry& entry, std::string_view path) {
  if (entry.kind == EntryKind::kSingleFile) {
    return same_path(entry.path, path) ? std::optional(file_name(path)) : std::nullopt;
  }
  const auto rest = below(entry.path, path);
  const bool in_subfolder = rest && rest->find_first_of(kSeparators) != std::string_view::npos;
  if (entry.kind == EntryKind::kFolderWithoutSubfolders && in_subfolder) return std::nullopt;
  return rest;
}

// The path of a stored text that an entry can have given.
std::optional<std::string> resolved_by(const Entry& entry, std::string_view stored) {
  switch (entry.kind) {
    case EntryKind::kSingleFile:
      if (!same_path(file_name(entry.path), stored)) return std::nullopt;
      return std::string(entry.path);
    case EntryKind::kFolderWithoutSubfolders:
      if (stored.find_first_of(kSeparators) != std::string_view::npos) return std::nullopt;
      break;
    case EntryKind::kAbsoluteFolder:
      return std::nullopt;
    case EntryKind::kFolder:
      break;
  }
  if (entry.path.empty()) return std::nullopt;
  return joined(entry.path, stored);
}

}  // namespace

std::string stored_model_path(std::string_view path, const std::vector<std::string>& search_paths) {
  if (!is_absolute(path)) return std::string(path);
  for (const std::string& text : search_paths) {
    const Entry entry = parse_entry(text);
    if (entry.kind == EntryKind::kAbsoluteFolder && below(entry.path, path)) {
      return std::string(path);
    }
  }
  for (const std::string& text : search_paths) {
    const auto stored = stored_by(parse_entry(text), path);
    if (stored && !is_absolute(*stored) &&
        same_path(resolved_model_path(*stored, search_paths), path)) {
      return std::string(*stored);
    }
  }
  return std::string(path);
}

std::string resolved_model_path(std::string_view stored,
                                const std::vector<std::string>& search_paths) {
  if (stored.empty() || is_absolute(stored)) return std::string(stored);
  for (const std::string& text : search_paths) {
    if (auto path = resolved_by(parse_entry(text), stored)) return *std::move(path);
  }
  return std::string(stored);
}

}  // namespace tooldb

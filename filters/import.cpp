#include "filters/import.h"

#include <array>
#include <exception>
#include <map>
#include <set>
#include <utility>

#include "filters/freecad.h"
#include "filters/fusion.h"
#include "filters/plain_text.h"

namespace tooldb {
namespace {

constexpr std::array<std::string_view, 6> kNoteKindNames = {
    "mapped", "approximated", "kept", "not representable", "failed", "absent"};

constexpr std::array<std::string_view, 1> kBitExtensions = {".fctb"};
constexpr std::array<std::string_view, 1> kLibraryExtensions = {".fctl"};
constexpr std::array<std::string_view, 1> kHolderExtensions = {".fcholder"};
constexpr std::array<std::string_view, 1> kFusionExtensions = {".json"};
constexpr std::array<std::string_view, 1> kFusionArchiveExtensions = {".tools"};

constexpr auto kFormats = std::to_array<ImportFormat>({
    {"freecad-bit", kBitExtensions, fits_freecad_bit, read_freecad_bit},
    {"freecad-library", kLibraryExtensions, fits_freecad_library, read_freecad_library},
    {"freecad-holder", kHolderExtensions, fits_freecad_holder, read_freecad_holder},
    {"fusion", kFusionExtensions, fits_fusion_json, read_fusion_json},
    {"fusion-archive", kFusionArchiveExtensions, fits_fusion_archive, read_fusion_archive},
});

bool has_extension(const ImportFormat& format, std::string_view lower_file_name) {
  for (const std::string_view extension : format.extensions) {
    if (lower_file_name.ends_with(extension)) return true;
  }
  return false;
}

std::string compared_code(const tdbItem& item) { return lower_case(item.GetCode()); }

/// Gives each item of one class a code of its own: files differ at most in case on some systems.
class UniqueCodes {
 public:
  void Add(tdbItem& item, ImportEntry& entry) {
    const std::string first = item.GetCode();
    // Numbers below have been tried for this code.
    int& next = next_number_.try_emplace(compared_code(item), 2).first->second;
    while (!used_.insert(compared_code(item)).second) {
      item.SetCode(first + " (" + std::to_string(next++) + ")");
    }
    if (item.GetCode() == first) return;
    item.SetName(item.GetCode());
    entry.notes.push_back(
        {NoteKind::kApproximated,
         "the code " + first + " comes again in this file; now " + item.GetCode()});
  }

 private:
  std::set<std::string> used_;
  std::map<std::string, int> next_number_;
};

void make_codes_unique(ImportResult& result) {
  UniqueCodes tools;
  UniqueCodes components;
  for (ImportEntry& entry : result.entries) {
    if (entry.tool) tools.Add(*entry.tool, entry);
    if (entry.component) components.Add(*entry.component, entry);
  }
}

}  // namespace

std::string_view note_kind_name(NoteKind kind) {
  return kNoteKindNames[static_cast<std::size_t>(kind)];
}

const ImportFormat* find_import_format(std::string_view file_name, std::string_view bytes) {
  const std::string lower_name = lower_case(file_name);
  const ImportFormat* by_content = nullptr;
  const ImportFormat* by_extension = nullptr;
  for (const ImportFormat& format : kFormats) {
    const bool fits = format.fits(bytes);
    const bool named = has_extension(format, lower_name);
    if (fits && named) return &format;
    if (fits && by_content == nullptr) by_content = &format;
    if (named && by_extension == nullptr) by_extension = &format;
  }
  return by_content != nullptr ? by_content : by_extension;
}

ImportResult import_tools(std::string_view bytes, const std::string& file_name,
                          const SiblingReader& siblings) {
  ImportResult result;
  const ImportFormat* format = find_import_format(file_name, bytes);
  if (format == nullptr) {
    result.notes.push_back({NoteKind::kFailed, file_name + ": no known format fits this file"});
    return result;
  }
  result.format = format->name;
  try {
    format->read(bytes, file_name, siblings, result);
  } catch (const std::exception& e) {
    result.notes.push_back({NoteKind::kFailed, file_name + ": " + e.what()});
  }
  if (result.entries.empty() && result.notes.empty()) {
    result.notes.push_back({NoteKind::kMapped, file_name + ": a library without tools"});
  }
  make_codes_unique(result);
  return result;
}

}  // namespace tooldb

#include "filters/import.h"

#include <algorithm>
#include <array>

namespace tooldb {
namespace {

constexpr std::array<std::string_view, 5> kNoteKindNames = {"mapped", "approximated", "kept",
                                                            "not representable", "failed"};

struct Mark {
  std::string_view plain;
  std::string_view full_width;
};
constexpr std::array<Mark, 3> kMarks = {Mark{"<", "\uFF1C"}, Mark{"&", "\uFF06"},
                                        Mark{"\"", "\uFF02"}};

}  // namespace

std::string_view note_kind_name(NoteKind kind) {
  return kNoteKindNames[static_cast<std::size_t>(kind)];
}

std::span<const ImportFormat> import_formats() { return {}; }

const ImportFormat* find_import_format(std::string_view file_name, std::string_view bytes) {
  static_cast<void>(file_name);
  for (const ImportFormat& format : import_formats()) {
    if (format.fits(bytes)) return &format;
  }
  return nullptr;
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
  format->read(bytes, file_name, siblings, result);
  return result;
}

std::string with_plain_marks(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    const auto* mark =
        std::ranges::find_if(kMarks, [&](const Mark& m) { return text.starts_with(m.full_width); });
    if (mark == kMarks.end()) {
      plain += text.front();
      text.remove_prefix(1);
    } else {
      plain += mark->plain;
      text.remove_prefix(mark->full_width.size());
    }
  }
  return plain;
}

}  // namespace tooldb

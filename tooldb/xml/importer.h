#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "geom/number_text.h"
#include "tooldb/error.h"
#include "tooldb/platform/error_codes.h"
#include "tooldb/xml/entry_scanner.h"
#include "tooldb/xml/import_codes.h"
#include "tooldb/xml/part_reading.h"

/// @file
/// The entries of an export.

namespace tooldb {

/// What an import has brought.
template <class Part>
struct Imported {
  std::vector<std::unique_ptr<Part>> parts;
  std::vector<tdbError> refusals;  ///< of entries
  std::vector<tdbError> notes;     ///< on entries that were read
};

/// Reads the entries of a document in their order, each with a code of its own. So many at a time
/// are brought ahead on all cores.
template <class Part>
class Importer {
 public:
  /// @param document  UTF-8 without zero bytes; borrowed
  Importer(std::string_view document, ReadContext context)
      : scanner_(document, EntryKind<Part>::kTag), context_(std::move(context)) {}

  Imported<Part> Run() {
    for (bool more = true; more;) {
      more = ScanSome();
      read_ahead(std::span<const Reading>(readings_), context_);
      for (const Found& found : found_) Settle(found);
    }
    const bool nothing = result_.parts.empty() && result_.refusals.empty();
    if (nothing && (other_entries_ || !scanner_.HasRoot())) {
      result_.refusals.push_back(missing_element(EntryKind<Part>::kTag));
    }
    return std::move(result_);
  }

 private:
  using Reading = std::unique_ptr<EntryReading<Part>>;
  // An entry, or what the document has in the place of one.
  using Found = std::variant<EntryReading<Part>*, tdbError>;

  // Entries that wait for components are held parsed, whatever their size.
  static constexpr std::size_t kBytesAhead = std::size_t{1} << 20;

  // Takes the next entries from the document; false at its end.
  bool ScanSome() {
    readings_.clear();
    found_.clear();
    for (std::size_t bytes = 0; found_.size() < kReadingsAhead && bytes < kBytesAhead;) {
      ScannedEntry scanned = scanner_.Scan();
      if (auto* const refusal = std::get_if<tdbError>(&scanned)) {
        found_.emplace_back(std::move(*refusal));
        continue;
      }
      auto* const entry = std::get_if<Entry>(&scanned);
      if (entry == nullptr) return false;
      bytes += entry->text.size();
      if (entry->name == EntryKind<Part>::kTag) {
        readings_.push_back(std::make_unique<EntryReading<Part>>(std::move(*entry)));
        found_.emplace_back(readings_.back().get());
      } else {
        other_entries_ = true;
      }
    }
    return true;
  }

  void Settle(const Found& found) {
    if (const auto* const refusal = std::get_if<tdbError>(&found)) {
      result_.refusals.push_back(*refusal);
      return;
    }
    EntryReading<Part>& reading = *std::get<EntryReading<Part>*>(found);
    try {
      Take(reading.Source(), reading.Finish(context_));
    } catch (const tdbError& refusal) {
      result_.refusals.push_back(refusal);
    }
  }

  void Take(const Entry& entry, std::unique_ptr<Part> part) {
    const std::string code = part->GetCode().empty() ? part->GetName() : part->GetCode();
    if (code.empty()) {
      std::string where = "line ";
      append_integer(where, entry.line);
      result_.refusals.emplace_back(
          kEmptyCodeError,
          where + ": a " + entry.name + " has neither code nor name; give it a NAME");
      return;
    }
    part->SetCode(codes_.Unique(code));
    for (const tdbError& note : part->GetErrs()) result_.notes.push_back(note);
    result_.parts.push_back(std::move(part));
  }

  EntryScanner scanner_;
  ReadContext context_;
  std::vector<Reading> readings_;
  std::vector<Found> found_;
  ImportCodes codes_;
  Imported<Part> result_;
  bool other_entries_ = false;
};

}  // namespace tooldb

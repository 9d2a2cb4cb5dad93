#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "geom/parallel.h"
#include "tooldb/xml/entry_reader.h"
#include "tooldb/xml/entry_scanner.h"

/// @file
/// The reading of tools and components, many at once: nearly all of it needs nothing but the
/// document, so that it can be done ahead of its turn on another thread.

namespace tooldb {

/// Code 1: a document has no entry of that name.
tdbError missing_element(std::string_view name);

/// The first entry of a name in a document, which must be sound to its end; raises what is wrong.
Entry first_entry(std::string_view document, std::string_view name);

/// One entry on its way to a tool or component.
template <class Part>
class EntryReading {
 public:
  explicit EntryReading(Entry entry) : entry_(std::move(entry)) {}
  EntryReading(const EntryReading&) = delete;
  EntryReading& operator=(const EntryReading&) = delete;

  const Entry& Source() const { return entry_; }
  /// Does what needs no component of a library, on any thread. What fails is left to `Finish`,
  /// which meets it again.
  void Ahead(const ReadContext& context) noexcept;
  /// The part, its code as it stands in the document. Raises `tdbError`: 1 for text that does not
  /// parse, 3 for an unknown type.
  std::unique_ptr<Part> Finish(const ReadContext& context);

 private:
  std::unique_ptr<Part> Read(const ReadContext& context);

  Entry entry_;
  std::optional<ParsedEntry> parsed_;  // borrows the entry
  std::unique_ptr<Part> part_;
};

/// A file on its way to the tool or component in it.
class FileReading {
 public:
  explicit FileReading(std::string path) : path_(std::move(path)) {}
  FileReading(const FileReading&) = delete;
  FileReading& operator=(const FileReading&) = delete;
  virtual ~FileReading() = default;

  const std::string& Path() const { return path_; }
  /// As for an entry.
  virtual void Ahead(const ReadContext& context) noexcept = 0;
  /// The part, its code taken from the file's name. Raises `tdbError` that names the file.
  virtual std::unique_ptr<tdbCompositeItem> Finish(const ReadContext& context) = 0;

 private:
  std::string path_;
};

/// The reading of a file that holds that kind of part.
template <class Part>
std::unique_ptr<FileReading> reading_of_file(std::string path);

/// How many readings to bring ahead together: enough for many cores, few to hold.
inline constexpr std::size_t kReadingsAhead = 256;

/// Brings readings ahead on all cores; a few on the caller's thread alone.
template <class Reading>
void read_ahead(std::span<const std::unique_ptr<Reading>> readings, const ReadContext& context) {
  constexpr std::size_t kTogether = 16;  // that many are read before a thread has been woken
  parallel_for(readings.size(), kTogether, [&](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) readings[i]->Ahead(context);
  });
}

/// Reads files, some at a time brought ahead: `make(i)` gives the reading of each, which
/// `take(i, reading)` finishes in its turn, on the caller's thread.
template <class Make, class Take>
void read_in_turn(std::size_t count, const ReadContext& context, Make&& make, Take&& take) {
  std::vector<std::unique_ptr<FileReading>> readings;
  for (std::size_t begin = 0; begin < count; begin += readings.size()) {
    readings.clear();
    const std::size_t end = std::min(count, begin + kReadingsAhead);
    for (std::size_t i = begin; i < end; ++i) readings.push_back(make(i));
    read_ahead<FileReading>(readings, context);
    for (std::size_t i = begin; i < end; ++i) take(i, *readings[i - begin]);
  }
}

}  // namespace tooldb

#include "tooldb/xml/entry_scanner.h"

#include <algorithm>

#include "geom/number_text.h"
#include "tooldb/model/text.h"
#include "tooldb/platform/error_codes.h"
#include "tooldb/xml/grammar.h"

namespace tooldb {
namespace {

// Below the depth that the parser takes.
constexpr std::size_t kDeepest = 90;

struct OpenElement {
  std::string_view name;
  std::size_t number;   // in the entry
  std::size_t content;  // offset behind the start tag
  bool has_elements = false;
};

// A text that the parser would change, and that needs nothing of what it does.
bool is_raw_text(std::string_view content) {
  const bool changed =
      std::ranges::all_of(content, is_blank) || content.find('\r') != std::string_view::npos;
  return changed && !content.empty() && content.find_first_of("&<") == std::string_view::npos;
}

// Follows the tags of one entry: which elements are open, how many there were.
class EntryTracker {
 public:
  explicit EntryTracker(std::string_view document) : document_(document) {}

  /// What is wrong with the tag where it stands; nothing when it is right.
  std::optional<MarkupError> Take(const Tag& tag) {
    return tag.kind == Tag::Kind::kEnd ? Close(tag) : Open(tag);
  }

  bool Done() const { return open_.empty(); }
  std::string_view Innermost() const { return open_.back().name; }
  std::vector<RawContent> TakeRaw() { return std::move(raw_); }

 private:
  std::optional<MarkupError> Open(const Tag& tag) {
    if (!open_.empty()) {
      open_.back().has_elements = true;
      if (is_name(tag.name, tag::kTool)) {
        return MarkupError{tag.begin, tag.begin,
                           "a tool begins before " + shown_tag(Innermost()) + " is closed"};
      }
    }
    const std::size_t number = count_++;
    if (tag.kind == Tag::Kind::kEmpty) return std::nullopt;
    if (open_.size() >= kDeepest) {
      return MarkupError{tag.begin, tag.begin, "elements are nested more than 90 deep"};
    }
    if (profile_depth_ == 0 && is_name(tag.name, tag::kProfile)) {
      profile_depth_ = open_.size() + 1;
    }
    open_.push_back({tag.name, number, tag.end});
    return std::nullopt;
  }

  std::optional<MarkupError> Close(const Tag& tag) {
    const OpenElement& element = open_.back();
    if (element.name != tag.name) {
      return MarkupError{tag.begin, tag.begin,
                         "the end tag of " + shown_tag(tag.name) + " where " +
                             shown_tag(element.name) + " is open"};
    }
    const bool in_profile = profile_depth_ != 0 && open_.size() > profile_depth_;
    const auto content = document_.substr(element.content, tag.begin - element.content);
    const bool is_profile = open_.size() == profile_depth_;
    if (is_profile || (!in_profile && !element.has_elements && is_raw_text(content))) {
      raw_.push_back({element.number, content});
    }
    if (is_profile) profile_depth_ = 0;
    open_.pop_back();
    return std::nullopt;
  }

  std::string_view document_;
  std::vector<OpenElement> open_;
  std::vector<RawContent> raw_;
  std::size_t count_ = 0;
  std::size_t profile_depth_ = 0;  // how many elements are open down to the outermost profile
};

}  // namespace

EntryScanner::EntryScanner(std::string_view document, std::string_view wanted)
    : document_(document), wanted_(wanted), scanner_(document) {}

ScannedEntry EntryScanner::Scan() {
  if (ended_) return {};
  Reading reading = ReadNext();
  if (auto* const entry = std::get_if<Entry>(&reading)) return std::move(*entry);
  const auto* const fault = std::get_if<MarkupError>(&reading);
  if (fault == nullptr) return {};
  std::string message = "line ";
  append_integer(message, LineAt(fault->offset));
  message += ": " + fault->what + "; mend it in a text editor, or export the file again";
  SkipBrokenEntry(*fault);
  return tdbError(kGeneralError, message);
}

std::optional<Entry> EntryScanner::Next() {
  ScannedEntry scanned = Scan();
  if (auto* const error = std::get_if<tdbError>(&scanned)) throw std::move(*error);
  auto* const entry = std::get_if<Entry>(&scanned);
  return entry == nullptr ? std::nullopt : std::optional<Entry>(std::move(*entry));
}

EntryScanner::Reading EntryScanner::ReadNext() {
  for (;;) {
    ScannedTag scanned = scanner_.Next();
    if (auto* const fault = std::get_if<MarkupError>(&scanned)) return std::move(*fault);
    const Tag& found = std::get<Tag>(scanned);
    const bool is_root = is_name(found.name, tag::kRoot);
    if (found.kind == Tag::Kind::kEndOfText) {
      ended_ = true;
      if (!in_root_) return {};
      return MarkupError{found.begin, found.end,
                         "the text ends before </TOOLDB>: a part of it is missing"};
    }
    if (found.kind == Tag::Kind::kEnd) {
      if (!is_root || !in_root_) {
        return MarkupError{found.begin, found.end,
                           "the end tag of " + shown_tag(found.name) + " closes nothing"};
      }
      in_root_ = false;
    } else if (is_root && !in_root_) {
      has_root_ = true;
      in_root_ = found.kind == Tag::Kind::kStart;
    } else {
      return ReadEntry(found);
    }
  }
}

EntryScanner::Reading EntryScanner::ReadEntry(const Tag& start) {
  Entry entry;
  entry.name = upper_text(start.name);
  entry.line = LineAt(start.begin);
  entry.in_root = in_root_;
  EntryTracker tracker(document_);
  Tag last = start;
  auto fault = tracker.Take(start);
  while (!fault && !tracker.Done()) {
    ScannedTag scanned = scanner_.Next();
    if (auto* const broken = std::get_if<MarkupError>(&scanned)) return std::move(*broken);
    last = std::get<Tag>(scanned);
    if (last.kind == Tag::Kind::kEndOfText) {
      return MarkupError{start.begin, start.end,
                         "the text ends before " + shown_tag(tracker.Innermost()) +
                             " of this element is closed: a part of it is missing"};
    }
    fault = tracker.Take(last);
  }
  if (fault) return *std::move(fault);
  entry.text = document_.substr(start.begin, last.end - start.begin);
  entry.raw = tracker.TakeRaw();
  return entry;
}

bool EntryScanner::BeginsEntry(const Tag& found) const {
  if (found.kind == Tag::Kind::kEnd || !is_name(found.name, wanted_)) return false;
  // A component inside another element names its parent.
  const auto text = document_.substr(found.begin, found.end - found.begin);
  return text.find("PARENT=") == std::string_view::npos ||
         text.find("PARENT=\"\"") != std::string_view::npos;
}

void EntryScanner::SkipBrokenEntry(const MarkupError& fault) {
  scanner_.MoveTo(fault.resume);
  for (bool sought = !ended_; sought;) {
    const Tag found = scanner_.NextSound();
    const bool root_end = in_root_ && is_name(found.name, tag::kRoot);
    ended_ = found.kind == Tag::Kind::kEndOfText;
    sought = !ended_ && !root_end && !BeginsEntry(found);
    if (!sought) scanner_.MoveTo(found.begin);
  }
}

int EntryScanner::LineAt(std::size_t offset) {
  if (offset < counted_to_) {
    return lines_ - static_cast<int>(
                        std::ranges::count(document_.substr(offset, counted_to_ - offset), '\n'));
  }
  lines_ += static_cast<int>(
      std::ranges::count(document_.substr(counted_to_, offset - counted_to_), '\n'));
  counted_to_ = offset;
  return lines_;
}

}  // namespace tooldb

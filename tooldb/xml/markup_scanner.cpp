#include "tooldb/xml/markup_scanner.h"

#include <algorithm>
#include <array>

#include "tooldb/model/text.h"

namespace tooldb {
namespace {

// The parser's work grows with the square of this number.
constexpr int kMostAttributes = 256;

constexpr auto kNone = std::string_view::npos;

struct Special {
  std::string_view open;
  std::string_view close;
  std::string_view what;
};
// The first that fits counts: a declaration opens like a comment.
constexpr auto kSpecials = std::to_array<Special>({
    {"<!--", "-->", "the comment"},
    {"<![CDATA[", "]]>", "the CDATA section"},
    {"<!", ">", "the declaration"},
    {"<?", "?>", "the processing instruction"},
});

/// The kind of comment, declaration and so on that a text begins with; null for any other.
const Special* special_at(std::string_view text) {
  const auto special = std::ranges::find_if(
      kSpecials, [&](const Special& each) { return text.starts_with(each.open); });
  return special == kSpecials.end() ? nullptr : &*special;
}

constexpr bool is_letter(char c) { return upper(c) >= 'A' && upper(c) <= 'Z'; }
constexpr bool starts_name(char c) {
  return is_letter(c) || c == '_' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
}

// The characters that go on with a name, by their codes.
constexpr auto kContinuesName = [] {
  std::array<bool, 256> table{};
  for (unsigned code = 0; code < table.size(); ++code) {
    const char c = static_cast<char>(code);
    table[code] = starts_name(c) || (c >= '0' && c <= '9') || c == '.' || c == '-';
  }
  return table;
}();
bool continues_name(char c) { return kContinuesName[static_cast<unsigned char>(c)]; }

std::string in_tag(std::string_view name) { return " in the tag " + shown_tag(name); }

}  // namespace

std::string shown_tag(std::string_view name) {
  constexpr std::size_t kLongestShown = 40;
  std::size_t length = std::min(name.size(), kLongestShown);
  // Not within a character of several bytes.
  while (length < name.size() && length > 0 &&
         (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) {
    --length;
  }
  return "<" + std::string(name.substr(0, length)) + (length < name.size() ? "...>" : ">");
}

bool is_name(std::string_view spelt, std::string_view upper_name) {
  return std::ranges::equal(spelt, upper_name, [](char a, char b) { return upper(a) == b; });
}

std::size_t after_special(std::string_view text, std::size_t begin) {
  const Special* const special = special_at(text.substr(begin));
  if (special == nullptr) return begin + 1;
  const auto close = text.find(special->close, begin + special->open.size());
  return close == kNone ? kNone : close + special->close.size();
}

ScannedTag MarkupScanner::Next() {
  const Reading reading = ReadNext(offset_);
  if (reading.fault != Fault::kNone) return Explained(reading);
  offset_ = reading.tag.end;
  return reading.tag;
}

Tag MarkupScanner::NextSound() {
  Reading reading = ReadNext(offset_);
  while (reading.fault != Fault::kNone) {
    reading = ReadNext(reading.fault == Fault::kSpecial ? text_.size() : reading.tag.begin + 1);
  }
  offset_ = reading.tag.end;
  return reading.tag;
}

MarkupScanner::Reading MarkupScanner::ReadNext(std::size_t at) const {
  for (;;) {
    at = text_.find('<', at);
    if (at == kNone) return {{Tag::Kind::kEndOfText, {}, text_.size(), text_.size()}, Fault::kNone};
    if (!Is(at + 1, '!') && !Is(at + 1, '?')) return ReadTag(at);
    const std::size_t next = after_special(text_, at);
    if (next == kNone) return {{Tag::Kind::kEndOfText, {}, at, at}, Fault::kSpecial};
    at = next;
  }
}

MarkupError MarkupScanner::Explained(const Reading& reading) const {
  const Tag& tag = reading.tag;
  const auto error = [&](std::string what) {
    return MarkupError{tag.begin, tag.begin + 1, std::move(what)};
  };
  switch (reading.fault) {
    case Fault::kSpecial:
      return {tag.begin, text_.size(),
              std::string(special_at(text_.substr(tag.begin))->what) + " is not closed"};
    case Fault::kEndTag:
      return error("an end tag is not closed");
    case Fault::kNoName:
      return error("a \"<\" that begins no tag; a text cannot hold this character");
    case Fault::kManyAttributes:
      return error("more than 256 attributes" + in_tag(tag.name));
    case Fault::kAttribute:
      return error("a broken attribute" + in_tag(tag.name));
    case Fault::kStray:
      return error("a stray character" + in_tag(tag.name));
    case Fault::kNotClosed:
    case Fault::kNone:
      break;
  }
  return error("the tag " + shown_tag(tag.name) + " is not closed");
}

MarkupScanner::Reading MarkupScanner::ReadTag(std::size_t begin) const {
  Tag tag;
  tag.begin = begin;
  const std::size_t at = AfterBlanks(begin + 1);
  return Is(at, '/') ? ReadEndTag(tag, AfterBlanks(at + 1)) : ReadStartTag(tag, at);
}

MarkupScanner::Reading MarkupScanner::ReadEndTag(Tag tag, std::size_t at) const {
  tag.kind = Tag::Kind::kEnd;
  const std::size_t name_end = AfterName(at);
  tag.name = text_.substr(at, name_end - at);
  at = AfterBlanks(name_end);
  if (!Is(at, '>')) return {tag, Fault::kEndTag};
  tag.end = at + 1;
  return {tag, Fault::kNone};
}

MarkupScanner::Reading MarkupScanner::ReadStartTag(Tag tag, std::size_t at) const {
  const std::size_t name_end = AfterName(at);
  tag.name = text_.substr(at, name_end - at);
  if (tag.name.empty()) return {tag, Fault::kNoName};
  int attributes = 0;
  for (at = AfterBlanks(name_end); at < text_.size() && starts_name(text_[at]);) {
    if (++attributes > kMostAttributes) return {tag, Fault::kManyAttributes};
    const std::size_t next = AfterAttribute(at);
    if (next == kNone) return {tag, Fault::kAttribute};
    at = AfterBlanks(next);
  }
  tag.kind = Is(at, '/') ? Tag::Kind::kEmpty : Tag::Kind::kStart;
  if (tag.kind == Tag::Kind::kEmpty) ++at;
  if (!Is(at, '>')) return {tag, at < text_.size() ? Fault::kStray : Fault::kNotClosed};
  tag.end = at + 1;
  return {tag, Fault::kNone};
}

// Behind name="value"; npos when it is no attribute.
std::size_t MarkupScanner::AfterAttribute(std::size_t at) const {
  at = AfterBlanks(AfterName(at));
  if (!Is(at, '=')) return kNone;
  at = AfterBlanks(at + 1);
  if (!Is(at, '"') && !Is(at, '\'')) return kNone;
  const auto close = text_.find(text_[at], at + 1);
  return close == kNone ? kNone : close + 1;
}

std::size_t MarkupScanner::AfterName(std::size_t at) const {
  if (at >= text_.size() || !starts_name(text_[at])) return at;
  while (at < text_.size() && continues_name(text_[at])) ++at;
  return at;
}

std::size_t MarkupScanner::AfterBlanks(std::size_t at) const {
  while (at < text_.size() && is_blank(text_[at])) ++at;
  return at;
}

}  // namespace tooldb

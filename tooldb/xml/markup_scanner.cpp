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

bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool starts_name(char c) {
  return is_letter(c) || c == '_' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
}
bool continues_name(char c) {
  return starts_name(c) || (c >= '0' && c <= '9') || c == '.' || c == '-';
}

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

Tag MarkupScanner::Next() {
  std::size_t at = offset_;
  for (;;) {
    at = text_.find('<', at);
    if (at == kNone) {
      offset_ = text_.size();
      return {Tag::Kind::kEndOfText, {}, text_.size(), text_.size()};
    }
    if (!Is(at + 1, '!') && !Is(at + 1, '?')) break;
    at = AfterSpecial(at);
  }
  const Tag tag = ReadTag(at);
  offset_ = tag.end;
  return tag;
}

std::size_t MarkupScanner::AfterSpecial(std::size_t begin) const {
  for (const Special& special : kSpecials) {
    if (!text_.substr(begin).starts_with(special.open)) continue;
    const auto close = text_.find(special.close, begin + special.open.size());
    if (close == kNone) {
      throw MarkupError{begin, text_.size(), std::string(special.what) + " is not closed"};
    }
    return close + special.close.size();
  }
  return begin + 1;
}

Tag MarkupScanner::ReadTag(std::size_t begin) const {
  Tag tag;
  tag.begin = begin;
  const std::size_t at = AfterBlanks(begin + 1);
  return Is(at, '/') ? ReadEndTag(tag, AfterBlanks(at + 1)) : ReadStartTag(tag, at);
}

Tag MarkupScanner::ReadEndTag(Tag tag, std::size_t at) const {
  tag.kind = Tag::Kind::kEnd;
  const std::size_t name_end = AfterName(at);
  tag.name = text_.substr(at, name_end - at);
  at = AfterBlanks(name_end);
  if (!Is(at, '>')) throw MarkupError{tag.begin, tag.begin + 1, "an end tag is not closed"};
  tag.end = at + 1;
  return tag;
}

Tag MarkupScanner::ReadStartTag(Tag tag, std::size_t at) const {
  const std::size_t name_end = AfterName(at);
  tag.name = text_.substr(at, name_end - at);
  if (tag.name.empty()) {
    throw MarkupError{tag.begin, tag.begin + 1,
                      "a \"<\" that begins no tag; a text cannot hold this character"};
  }
  int attributes = 0;
  for (at = AfterBlanks(name_end); at < text_.size() && starts_name(text_[at]);) {
    if (++attributes > kMostAttributes) {
      throw MarkupError{tag.begin, tag.begin + 1, "more than 256 attributes" + in_tag(tag.name)};
    }
    const std::size_t next = AfterAttribute(at);
    if (next == kNone) {
      throw MarkupError{tag.begin, tag.begin + 1, "a broken attribute" + in_tag(tag.name)};
    }
    at = AfterBlanks(next);
  }
  tag.kind = Is(at, '/') ? Tag::Kind::kEmpty : Tag::Kind::kStart;
  if (tag.kind == Tag::Kind::kEmpty) ++at;
  if (!Is(at, '>')) {
    throw MarkupError{tag.begin, tag.begin + 1,
                      at < text_.size() ? "a stray character" + in_tag(tag.name)
                                        : "the tag " + shown_tag(tag.name) + " is not closed"};
  }
  tag.end = at + 1;
  return tag;
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
  const auto next = text_.find_first_not_of(kBlanks, at);
  return next == kNone ? text_.size() : next;
}

}  // namespace tooldb

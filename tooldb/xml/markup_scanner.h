#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>

/// @file
/// Tags of a document, one after the other, at places that the parser forgets.

namespace tooldb {

/// What is wrong with the markup at an offset of the text.
struct MarkupError {
  std::size_t offset;
  std::size_t resume;  ///< where sound tags may follow; the end when none can
  std::string what;
};

/// A tag for a message: the name in angle brackets, a long one shortened.
std::string shown_tag(std::string_view name);

/// True when a name, however spelt, is `upper_name`.
bool is_name(std::string_view spelt, std::string_view upper_name);

/// The offset behind the comment, CDATA section, processing instruction or declaration that begins
/// at `begin`; npos when it is not closed.
std::size_t after_special(std::string_view text, std::size_t begin);

struct Tag {
  enum class Kind { kStart, kEmpty, kEnd, kEndOfText };
  Kind kind = Kind::kEndOfText;
  std::string_view name;  ///< as it is spelt
  std::size_t begin = 0;  ///< offset of its "<"
  std::size_t end = 0;    ///< offset behind its ">"
};

/// A tag, or what stands in the way of one.
using ScannedTag = std::variant<Tag, MarkupError>;

/// Walks over a text from tag to tag, past character data, comments, CDATA sections, processing
/// instructions and declarations. Time is linear in the text, memory constant.
class MarkupScanner {
 public:
  explicit MarkupScanner(std::string_view text) : text_(text) {}

  /// The next tag. At a fault the scanner stays where it stood before the call.
  ScannedTag Next();
  /// The next tag that is sound, past any faults.
  Tag NextSound();

  /// The next call begins at `offset`.
  void MoveTo(std::size_t offset) { offset_ = offset; }

 private:
  // A hostile text has a fault in every byte or two, so that none is put into words unless it is
  // asked for.
  enum class Fault {
    kNone,
    kSpecial,
    kEndTag,
    kNoName,
    kManyAttributes,
    kAttribute,
    kStray,
    kNotClosed
  };
  struct Reading {
    Tag tag;  // to its end, or as far as its fault
    Fault fault = Fault::kNone;
  };
  Reading ReadNext(std::size_t at) const;
  Reading ReadTag(std::size_t begin) const;
  Reading ReadEndTag(Tag tag, std::size_t at) const;
  Reading ReadStartTag(Tag tag, std::size_t at) const;
  MarkupError Explained(const Reading& reading) const;
  std::size_t AfterAttribute(std::size_t at) const;
  std::size_t AfterName(std::size_t at) const;
  std::size_t AfterBlanks(std::size_t at) const;
  bool Is(std::size_t at, char c) const { return at < text_.size() && text_[at] == c; }

  std::string_view text_;
  std::size_t offset_ = 0;
};

}  // namespace tooldb

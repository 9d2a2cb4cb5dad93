#include "geom/stl_text_reader.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "geom/decimal_scan.h"
#include "geom/fresh_memory.h"
#include "geom/parallel.h"

namespace tooldb {
namespace {

// A block is read at once and parsed in pieces; both are far longer than any facet.
constexpr std::size_t kBlockBytes = std::size_t{4} << 20;
constexpr std::size_t kPieceBytes = std::size_t{1} << 18;
// A failure this near to the end of a block may come of the cut.
constexpr std::ptrdiff_t kLongestWord = 64;

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
// The header of a binary file, its count and a facet: some byte of these is 0, and none of a text.
constexpr std::size_t kLeadBytes = 134;

bool is_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr const char* kLineEnd = "a line end";

// `word` is in lower case, the text in any.
bool begins_with_word(std::string_view text, std::string_view word) {
  return std::ranges::equal(text.substr(0, word.size()), word, [](char a, char b) {
    return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b;
  });
}

// Where parsing stopped: at the end of its text, or in a part of the file that is not as it should
// be.
struct Stop {
  const char* part = nullptr;  // where the facet or line begins that was not finished
  const char* at = nullptr;
  const char* expected = nullptr;  // null at the end of the text
  bool any = false;                // a whole facet, or the end of a solid
};

class TextParser {
 public:
  TextParser(std::string_view text, std::vector<Facet>& facets)
      : p_(text.data()), end_(text.data() + text.size()), facets_(facets) {}

  Stop Run() {
    while (SkipBlanks()) {
      const char* const part = p_;
      if (!ParsePart()) return {part, p_, expected_, any_};
    }
    return {p_, p_, nullptr, any_};
  }

 private:
  bool ParsePart() {
    if (Word("facet")) return ParseFacet();
    if (Word("solid")) return SkipLine();
    if (!Word("endsolid")) return Fail("'facet' or 'endsolid'");
    any_ = true;
    return SkipLine();
  }

  bool ParseFacet() {
    Facet facet;
    if (!Expect("normal") || !SkipWords(3)) return false;
    if (!Expect("outer") || !Expect("loop")) return false;
    if (!Corner(facet.a) || !Corner(facet.b) || !Corner(facet.c)) return false;
    if (!Expect("endloop") || !Expect("endfacet")) return false;
    any_ = true;
    facet.n = facet_normal(facet.a, facet.b, facet.c);
    if (facet.n != Vec3{}) facets_.push_back(facet);
    return true;
  }

  bool Corner(Vec3& corner) {
    return Expect("vertex") && Number(corner.x) && Number(corner.y) && Number(corner.z);
  }

  bool Number(double& value) {
    SkipBlanks();
    const char* const after = scan_decimal(p_, end_, value);
    if (after == nullptr || (after < end_ && !is_blank(*after))) return Fail("a number");
    if (!std::isfinite(value)) return Fail("a finite number");
    p_ = after;
    return true;
  }

  template <std::size_t N>
  bool Expect(const char (&word)[N]) {
    SkipBlanks();
    return Word(word) || Fail(word);
  }

  // Takes a word that is written in lower case, or in any.
  template <std::size_t N>
  bool Word(const char (&word)[N]) {
    constexpr std::ptrdiff_t kLength = N - 1;
    if (end_ - p_ < kLength || (end_ - p_ > kLength && !is_blank(p_[kLength]))) return false;
    if (std::memcmp(p_, word, N - 1) != 0 && !begins_with_word({p_, N - 1}, word)) return false;
    p_ += kLength;
    return true;
  }

  bool SkipWords(int count) {
    for (; count > 0; --count) {
      if (!SkipBlanks()) return Fail("a normal");
      while (p_ < end_ && !is_blank(*p_)) ++p_;
    }
    return true;
  }

  bool SkipBlanks() {
    while (p_ < end_ && is_blank(*p_)) ++p_;
    return p_ < end_;
  }

  // A name may hold anything but a line end. Without one the name may go on in the next block.
  bool SkipLine() {
    while (p_ < end_ && *p_ != '\n' && *p_ != '\r') ++p_;
    return p_ < end_ || Fail(kLineEnd);
  }

  bool Fail(const char* expected) {
    expected_ = expected;
    return false;
  }

  const char* p_;
  const char* end_;
  std::vector<Facet>& facets_;
  const char* expected_ = nullptr;
  bool any_ = false;
};

bool begins_facet(std::string_view text) {
  constexpr std::string_view kWord = "facet";
  return begins_with_word(text, kWord) && text.size() > kWord.size() &&
         is_blank(text[kWord.size()]);
}

// Where the first facet begins that starts a line at `from` or later; the end when there is none.
std::size_t next_facet(std::string_view text, std::size_t from) {
  while (from < text.size()) {
    const std::size_t line_end = text.find('\n', from);
    if (line_end == std::string_view::npos) return text.size();
    from = line_end + 1;
    while (from < text.size() && is_blank(text[from])) ++from;
    if (begins_facet(text.substr(from))) return from;
  }
  return text.size();
}

// A part of a block that is parsed by itself; its vector is used again in each block.
struct Piece {
  std::string_view text;
  std::vector<Facet> facets;
  Stop stop;
};

void cut(std::string_view block, std::vector<Piece>& pieces) {
  std::size_t used = 0;
  for (std::size_t begin = 0; begin < block.size(); ++used) {
    const std::size_t end = next_facet(block, std::min(block.size(), begin + kPieceBytes));
    if (used == pieces.size()) pieces.emplace_back();
    pieces[used].text = block.substr(begin, end - begin);
    begin = end;
  }
  pieces.resize(used);
}

void parse(std::vector<Piece>& pieces) {
  parallel_for(pieces.size(), 1, [&](std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
      pieces[i].facets.clear();
      pieces[i].stop = TextParser(pieces[i].text, pieces[i].facets).Run();
    }
  });
}

std::size_t facets_in(const std::vector<Piece>& pieces) {
  std::size_t count = 0;
  for (const Piece& piece : pieces) count += piece.facets.size();
  return count;
}

// Room for the whole mesh, should it go on as it began; what is not used takes no memory.
void reserve(std::vector<Facet>& mesh, std::uint64_t read, std::uint64_t size) {
  constexpr double kSpare = 1.02;
  const double share = static_cast<double>(size) / static_cast<double>(read);
  mesh.reserve(static_cast<std::size_t>(static_cast<double>(mesh.size()) * share * kSpare) + 16);
}

std::uint64_t line_of(ByteSource& source, std::uint64_t offset) {
  std::uint64_t line = 1;
  char before = 0;
  for (std::uint64_t at = 0; at < offset;) {
    const auto left = static_cast<std::size_t>(std::min<std::uint64_t>(kBlockBytes, offset - at));
    const std::string_view part = source.Part(at, left);
    if (part.empty()) break;
    for (char c : part) {
      if (c == '\r' || (c == '\n' && before != '\r')) ++line;
      before = c;
    }
    at += part.size();
  }
  return line;
}

std::string word_at(ByteSource& source, std::uint64_t offset) {
  std::string word;
  for (char c : source.Part(offset, kLongestWord)) {
    if (is_blank(c)) break;
    word += c >= ' ' && c <= '~' ? c : '?';
  }
  return word;
}

std::string describe(ByteSource& source, std::uint64_t offset, const char* expected) {
  const std::string line = "line " + std::to_string(line_of(source, offset)) + ": ";
  const std::string word = word_at(source, offset);
  if (word.empty()) return line + "the file ends where " + expected + " should be";
  return line + "'" + word + "' where " + expected + " should be";
}

}  // namespace

bool looks_like_stl_text(ByteSource& source) {
  std::string_view lead = source.Part(0, kLeadBytes);
  if (lead.find('\0') != std::string_view::npos) return false;
  if (lead.starts_with(kByteOrderMark)) lead.remove_prefix(kByteOrderMark.size());
  while (!lead.empty() && is_blank(lead.front())) lead.remove_prefix(1);
  return begins_with_word(lead, "solid") || begins_with_word(lead, "facet");
}

std::optional<std::vector<Facet>> read_stl_text(ByteSource& source, std::string& error) {
  std::vector<Facet> mesh;
  std::vector<Piece> pieces;
  bool any = false;
  const std::uint64_t size = source.Size();
  const bool is_marked = source.Part(0, kByteOrderMark.size()) == kByteOrderMark;
  const std::uint64_t start = is_marked ? kByteOrderMark.size() : 0;
  for (std::uint64_t offset = start; offset < size;) {
    const std::string_view block = source.Part(offset, kBlockBytes);
    const bool is_last = offset + block.size() >= size || block.empty();
    cut(block, pieces);
    parse(pieces);
    const std::uint64_t begin = offset;
    offset = is_last ? size : offset + block.size();
    touch_spare(mesh, facets_in(pieces));
    for (const Piece& piece : pieces) {
      mesh.insert(mesh.end(), piece.facets.begin(), piece.facets.end());
      const Stop& stop = piece.stop;
      any = any || stop.any;
      if (stop.expected == nullptr || (is_last && stop.expected == kLineEnd)) continue;
      const bool is_cut = !is_last && stop.part > block.data() &&
                          block.data() + block.size() - stop.at < kLongestWord;
      offset = begin + static_cast<std::uint64_t>((is_cut ? stop.part : stop.at) - block.data());
      if (is_cut) break;
      error = describe(source, offset, stop.expected);
      return std::nullopt;
    }
    if (begin == start && !is_last) reserve(mesh, offset, size);
  }
  if (any) return mesh;
  error = "there is neither a facet nor an 'endsolid' in it";
  return std::nullopt;
}

}  // namespace tooldb

#include "tooldb/xml/text_encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "geom/number_text.h"
#include "tooldb/error.h"
#include "tooldb/platform/error_codes.h"

namespace tooldb {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LittleMark = "\xFF\xFE";
constexpr std::string_view kUtf16BigMark = "\xFE\xFF";
constexpr char32_t kReplacement = 0xFFFD;

unsigned byte(std::string_view text, std::size_t i) { return static_cast<unsigned char>(text[i]); }

void append_utf8(std::string& out, char32_t c) {
  const auto tail = [&out, c](int shift) {
    out.push_back(static_cast<char>(0x80 | ((c >> shift) & 0x3F)));
  };
  if (c < 0x80) {
    out.push_back(static_cast<char>(c));
  } else if (c < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    tail(0);
  } else if (c < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (c >> 12)));
    tail(6);
    tail(0);
  } else {
    out.push_back(static_cast<char>(0xF0 | (c >> 18)));
    tail(12);
    tail(6);
    tail(0);
  }
}

bool is_high_surrogate(char32_t c) { return c >= 0xD800 && c < 0xDC00; }
bool is_low_surrogate(char32_t c) { return c >= 0xDC00 && c < 0xE000; }

// `low` is the place of a unit's low byte in its pair of bytes.
std::string from_utf16(std::string_view bytes, std::size_t low) {
  const std::size_t count = bytes.size() / 2;
  const auto unit = [bytes, low](std::size_t i) -> char32_t {
    return byte(bytes, 2 * i + low) | byte(bytes, 2 * i + 1 - low) << 8;
  };
  std::string out;
  out.reserve(bytes.size());
  for (std::size_t i = 0; i < count; ++i) {
    const char32_t c = unit(i);
    if (is_high_surrogate(c) && i + 1 < count && is_low_surrogate(unit(i + 1))) {
      append_utf8(out, 0x10000 + ((c - 0xD800) << 10) + (unit(i + 1) - 0xDC00));
      ++i;
    } else {
      append_utf8(out, is_high_surrogate(c) || is_low_surrogate(c) ? kReplacement : c);
    }
  }
  if (bytes.size() % 2 != 0) append_utf8(out, kReplacement);
  return out;
}

std::string from_latin1(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size() + bytes.size() / 8);
  for (std::size_t i = 0; i < bytes.size(); ++i) append_utf8(out, byte(bytes, i));
  return out;
}

// Length of the well-formed character at `i`; 0 when there is none.
std::size_t utf8_length(std::string_view text, std::size_t i) {
  const unsigned lead = byte(text, i);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || i + length > text.size()) return 0;
  for (std::size_t k = 1; k < length; ++k) {
    if ((byte(text, i + k) & 0xC0) != 0x80) return 0;
  }
  const unsigned second = byte(text, i + 1);
  const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
  const bool beyond = (lead == 0xED && second >= 0xA0) || (lead == 0xF4 && second >= 0x90);
  return overlong || beyond ? 0 : length;
}

void refuse_zero_bytes(std::string_view text) {
  const auto zero = text.find('\0');
  if (zero == std::string_view::npos) return;
  std::string message = "line ";
  append_integer(message, 1 + std::ranges::count(text.substr(0, zero), '\n'));
  throw tdbError(kGeneralError,
                 message +
                     ": a zero byte in the text; the file is damaged, or UTF-16 without a "
                     "byte-order mark: save it as UTF-8");
}

// Eight bytes at once: most texts have no others than ASCII.
std::size_t ascii_length(std::string_view text) {
  std::size_t i = 0;
  for (std::uint64_t eight = 0; i + sizeof eight <= text.size(); i += sizeof eight) {
    std::memcpy(&eight, text.data() + i, sizeof eight);
    if ((eight & 0x8080808080808080U) != 0) break;
  }
  return i;
}

}  // namespace

bool is_utf8(std::string_view text) {
  for (std::size_t i = ascii_length(text); i < text.size();) {
    const std::size_t length = utf8_length(text, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

std::string_view document_text(std::string_view bytes, std::string& storage) {
  std::string_view text = bytes;
  if (bytes.starts_with(kUtf16LittleMark)) {
    text = storage = from_utf16(bytes.substr(2), 0);
  } else if (bytes.starts_with(kUtf16BigMark)) {
    text = storage = from_utf16(bytes.substr(2), 1);
  } else {
    if (text.starts_with(kUtf8Mark)) text.remove_prefix(kUtf8Mark.size());
    if (!is_utf8(text)) text = storage = from_latin1(text);
  }
  refuse_zero_bytes(text);
  return text;
}

}  // namespace tooldb

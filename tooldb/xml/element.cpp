#include "tooldb/xml/element.h"

#include <algorithm>

#include "geom/number_text.h"
#include "tooldb/model/text.h"
#include "tooldb/platform/error_codes.h"
#include "tooldb/xml/grammar.h"

namespace tooldb {
namespace {

std::string line_text(int line) {
  std::string text = "line ";
  append_integer(text, line);
  return text + ": ";
}

bool begins_reference(std::string_view text) {
  constexpr std::string_view kReferences[] = {"&#", "&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
  return std::ranges::any_of(kReferences,
                             [&](std::string_view each) { return text.starts_with(each); });
}

// Where the next "&" stands that begins no reference; npos when there is none.
std::size_t find_lone_ampersand(std::string_view text) {
  std::size_t at = text.find('&');
  while (at != std::string_view::npos && begins_reference(text.substr(at))) {
    at = text.find('&', at + 1);
  }
  return at;
}

void append_referenced(std::string_view text, std::string& out) {
  for (std::size_t at; (at = find_lone_ampersand(text)) != std::string_view::npos;) {
    out.append(text.substr(0, at)).append("&amp;");
    text.remove_prefix(at + 1);
  }
  out += text;
}

// The text with a reference for each lone "&". Files hold such, and the parser takes some other
// byte for one that stands behind a reference or a carriage return.
std::string without_lone_ampersands(std::string_view text) {
  std::string sound;
  sound.reserve(text.size() + text.size() / 8);
  MarkupScanner scanner(text);
  for (std::size_t done = 0; done < text.size();) {
    const Tag tag = scanner.NextSound();
    while (done < tag.begin) {  // between the tags
      const std::size_t special = std::min(text.find('<', done), tag.begin);
      append_referenced(text.substr(done, special - done), sound);
      done = special == tag.begin ? special : after_special(text, special);
      sound += text.substr(special, done - special);
    }
    append_referenced(text.substr(done, tag.end - done), sound);
    done = tag.end;
  }
  return sound;
}

// The next element in the order of the start tags; null behind the last.
Element* following(Element* element) {
  if (Element* child = element->FirstChildElement()) return child;
  for (tinyxml2::XMLNode* node = element; node != nullptr; node = node->Parent()) {
    if (Element* sibling = node->NextSiblingElement()) return sibling;
  }
  return nullptr;
}

}  // namespace

ParsedEntry::ParsedEntry(Entry& entry) : first_line_(entry.line) {
  std::string sound;
  if (find_lone_ampersand(entry.text) != std::string_view::npos) {
    sound = without_lone_ampersands(entry.text);
  }
  const std::string_view text = sound.empty() ? entry.text : sound;
  document_.Parse(text.data(), text.size());
  if (document_.Error() || document_.RootElement() == nullptr) {
    throw tdbError(kGeneralError, line_text(first_line_ + document_.ErrorLineNum() - 1) +
                                      "the XML cannot be parsed (" + document_.ErrorName() +
                                      "); mend it in a text editor, or export the file again");
  }
  MarkRawContents(entry);
}

std::string ParsedEntry::Where(const Element& element) const { return line_text(LineOf(element)); }

void ParsedEntry::MarkRawContents(Entry& entry) {
  std::size_t number = 0;
  auto next = entry.raw.begin();
  for (Element* element = document_.RootElement(); element != nullptr && next != entry.raw.end();
       element = following(element), ++number) {
    if (number == next->element) element->SetUserData(&*next++);
  }
}

std::string upper_name(const Element& element) { return upper_text(element.Name()); }

std::string text_of(const Element& element) {
  if (const auto* raw = static_cast<const RawContent*>(element.GetUserData())) {
    return std::string(raw->text);
  }
  std::string text;
  for (const auto* node = element.FirstChild(); node != nullptr; node = node->NextSibling()) {
    if (const auto* part = node->ToText()) text += part->Value();
  }
  return text;
}

std::optional<std::string_view> find_attribute(const Element& element, std::string_view name) {
  for (const auto* each = element.FirstAttribute(); each != nullptr; each = each->Next()) {
    const char* const spelt = each->Name();
    // Most differ in the first character.
    if (spelt[0] == name[0] && name == spelt) return each->Value();
  }
  return std::nullopt;
}

std::string_view attribute(const Element& element, std::string_view name) {
  return find_attribute(element, name).value_or(std::string_view());
}

bool has_attribute(const Element& element, std::string_view name) {
  return find_attribute(element, name).has_value();
}

bool is_true(std::string_view text) { return text == word::kTrue; }

double number(const Element& element, std::string_view name, double missing) {
  const auto text = find_attribute(element, name);
  return text ? leading_number(*text) : missing;
}

int integer(const Element& element, std::string_view name, int missing) {
  const auto text = find_attribute(element, name);
  return text ? leading_integer(*text) : missing;
}

std::string clean_name(std::string_view text) {
  std::string name(text);
  // Where it is written, a carriage return is read back as a line feed.
  std::erase_if(name, [](char c) { return c == '\n' || c == '\r'; });
  return std::string(trimmed(name));
}

Vec3d<double> three_numbers(std::string_view text) {
  double numbers[3] = {0, 0, 0};
  for (double& value : numbers) {
    text = trimmed(text);
    value = leading_number(text);
    const auto blank = text.find_first_of(kBlanks);
    text = blank == std::string_view::npos ? std::string_view() : text.substr(blank);
  }
  return {numbers[0], numbers[1], numbers[2]};
}

}  // namespace tooldb

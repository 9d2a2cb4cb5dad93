#include "tooldb/model/text.h"

#include <boost/regex.hpp>
#include <vector>

#include "geom/number_text.h"
#include "tooldb/item.h"

namespace tooldb {

std::string upper_text(std::string_view text) {
  std::string result(text);
  for (char& c : result) c = upper(c);
  return result;
}

std::string_view trimmed(std::string_view text, std::string_view blanks) {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string encoded_code(std::string_view code) {
  std::string result;
  result.reserve(code.size());
  for (const char c : code) {
    if (kForbiddenInFileNames.find(c) == std::string_view::npos) {
      result += c;
      continue;
    }
    result += "{{";
    append_integer(result, c);
    result += "}}";
  }
  return result;
}

std::string decoded_code(const std::string& file_name) {
  if (file_name.find("{{") == std::string::npos) return file_name;
  static const boost::regex kEscape("\\{{2}(\\d{1,3})\\}{2}");
  return boost::regex_replace(file_name, kEscape, [](const boost::smatch& match) {
    return std::string(1, static_cast<char>(leading_integer(match.str(1))));
  });
}

std::string comparable_code(std::string_view code) { return upper_text(trimmed(code)); }

std::string parent_chain(const tdbItem& item) {
  std::vector<const tdbItem*> chain;
  for (const tdbItem* i = &item; i != nullptr; i = i->GetParent()) chain.push_back(i);
  std::string result;
  for (auto i = chain.rbegin(); i != chain.rend(); ++i) {
    result += '\\';
    result += (*i)->GetName();
  }
  return result;
}

}  // namespace tooldb

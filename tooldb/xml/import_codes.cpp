#include "tooldb/xml/import_codes.h"

#include "geom/number_text.h"
#include "tooldb/model/text.h"

namespace tooldb {

std::string ImportCodes::Unique(const std::string& code) {
  const auto [entry, is_new] = taken_.try_emplace(comparable_code(code), 0);
  if (is_new) return code;
  int& clone = entry->second;  // the map leaves it where it is
  std::string candidate;
  do {
    candidate = code + " - Clone(";
    append_integer(candidate, ++clone);
    candidate += ')';
  } while (!taken_.try_emplace(comparable_code(candidate), 0).second);
  return candidate;
}

}  // namespace tooldb

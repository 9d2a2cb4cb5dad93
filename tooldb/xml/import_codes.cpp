#include "tooldb/xml/import_codes.h"

#include "geom/number_text.h"
#include "tooldb/model/text.h"

namespace tooldb {

std::string ImportCodes::Unique(const std::string& code) {
  const auto [entry, is_new] = taken_.try_emplace(comparable_code(code), 0);
  if (is_new) return code;
  std::string candidate;
  int clone = entry->second;
  do {
    candidate = code + " - Clone(";
    append_integer(candidate, ++clone);
    candidate += ')';
  } while (!taken_.try_emplace(comparable_code(candidate), 0).second);
  taken_[comparable_code(code)] = clone;
  return candidate;
}

}  // namespace tooldb

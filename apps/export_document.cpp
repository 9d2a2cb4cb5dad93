#include "apps/export_document.h"

#include "apps/text_rules.h"
#include "tooldb/composite_item.h"
#include "tooldb/tool_db.h"

namespace tooldb {
namespace {

// A code may hold what other texts must not: the attribute is written here, and escaped.
std::string code_attribute(const std::string& code) {
  std::string text = " CODE=\"";
  for (const char c : code) {
    switch (c) {
      case '<':
        text += "&lt;";
        break;
      case '&':
        text += "&amp;";
        break;
      case '"':
        text += "&quot;";
        break;
      default:
        text += c;
    }
  }
  return text + '"';
}

}  // namespace

ExportDocument::ExportDocument(const std::string& folder)
    : search_paths_{folder.empty() ? "." : folder} {
  std::string empty;
  tdbToolDB("export", 1).WriteXml(empty, search_paths_);
  const auto end = empty.rfind("</");
  head_ = empty.substr(0, end);
  tail_ = empty.substr(end);
}

void ExportDocument::Add(tdbCompositeItem& item) {
  require_storable(item);
  std::string text;
  item.WriteXml(text, search_paths_);
  text.insert(text.find(' '), code_attribute(item.GetCode()));
  body_ += text;
}

}  // namespace tooldb

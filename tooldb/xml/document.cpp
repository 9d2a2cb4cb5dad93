#include "tooldb/xml/document.h"

#include "tooldb/xml/grammar.h"
#include "tooldb/xml/xml_append.h"

namespace tooldb {

void append_document_header(std::string& out, int version) {
  append(out, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<", tag::kRoot,
         Attribute{att::kVersion, version}, ">\n");
}

void append_document_footer(std::string& out) { append(out, "</", tag::kRoot, ">\n"); }

}  // namespace tooldb

#pragma once

#include <string>
#include <vector>

#include "tests/xml/xml_fixture.h"

namespace tooldb {

enum class DocumentKind { kTool, kComponent, kTools, kComponents };

/// A document whose bytes are kept in tests/data/golden, and how it is made.
struct GoldenDocument {
  const char* name;
  DocumentKind kind;
  std::string (*write)();
};
extern const std::vector<GoldenDocument> kGoldenDocuments;

/// The search paths that the documents are written with.
extern const std::vector<std::string> kGoldenPaths;

/// Finds the one component that their tools use: K-1 with a link that carries a holder.
const tdbToolComponent* golden_component(const std::string& code);

/// The kept bytes; a failed test when there are none.
std::string golden_bytes(const std::string& name);
std::string golden_path(const std::string& name);

/// Reads a document and writes what was read. Raises what the reader raises.
std::string rewritten(DocumentKind kind, const std::string& text);

}  // namespace tooldb

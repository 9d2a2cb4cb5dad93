#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/xml/xml_fixture.h"
#include "tooldb/tool_components_db.h"

namespace tooldb {

/// A document whose bytes are kept in tests/data/golden, and how it is made.
struct GoldenDocument {
  const char* name;
  std::string (*write)();
  /// Reads a document of the kind and writes what was read. Raises what the reader finds wrong.
  std::string (*rewrite)(const std::string& text);
};
extern const std::vector<GoldenDocument> kGoldenDocuments;

/// The search paths that the documents are written with.
extern const std::vector<std::string> kGoldenPaths;

/// Holds the one component that their tools use: K-1 with a link that carries a holder.
tdbToolComponentsDB& golden_components();

/// A use of that component, with its members.
std::unique_ptr<tdbToolComponent> golden_use();

}  // namespace tooldb

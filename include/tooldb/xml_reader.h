#pragma once

#include <string>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/export.h"

class tdbTool;
class tdbToolComponent;
class tdbToolComponentsDB;

/// Reads tool files, component files and exports.
///
/// Every document may be UTF-8, UTF-16 with a byte-order mark or, if it does not parse as UTF-8,
/// Latin-1. Search paths resolve the paths of model files; the components database, which may be
/// null, resolves the components that tools refer to. A reference that it does not hold stays in
/// the tool, empty, with an error on the tool (`tdbTool::GetErrs`). Objects handed back belong to
/// the caller. On failure the error names the line where the parser knows it.
class TDB_EXPORT tdbXmlReader {
 public:
  /// True for a file whose top-level element is a single TOOL or TOOLCOMPONENT.
  static bool IsTalvikToolFile(const char* path);

  /// Reads one tool; its code is that of the file's name. Null with `err` filled on failure.
  static tdbTool* ReadTool(const char* path, const std::vector<std::string>& search_paths,
                           tdbError& err, tdbToolComponentsDB* components);
  static tdbToolComponent* ReadToolComponent(const char* path,
                                             const std::vector<std::string>& search_paths,
                                             tdbError& err, tdbToolComponentsDB* components);

  /// Reads many tools, as `ReadTool` does, on all cores. Afterwards `tools` and `errors` have a
  /// place for each path: a tool, or null and the reason. Both are empty for want of memory.
  /// @return true when every tool was read
  static bool ReadTools(const std::vector<std::string>& paths,
                        const std::vector<std::string>& search_paths, std::vector<tdbTool*>& tools,
                        std::vector<tdbError>& errors, tdbToolComponentsDB* components);

  /// Reads the first tool of a document; its code is the CODE attribute, else its name.
  static tdbTool* ImportToolFromXml(const char* xml_text,
                                    const std::vector<std::string>& search_paths, tdbError& err,
                                    tdbToolComponentsDB* components);

  /// Reads every tool of an export and appends them. A tool without CODE takes its name as code;
  /// a code that comes again in the document gets " - Clone(n)".
  /// @return false, with `err` filled, when the document does not parse or an entry is refused;
  ///         the entries that could be read are appended all the same
  static bool ImportFromXml(const char* xml_text, const std::vector<std::string>& search_paths,
                            std::vector<tdbTool*>& tools, tdbError& err,
                            tdbToolComponentsDB* components);
  static bool ImportFromXml(const char* xml_text, const std::vector<std::string>& search_paths,
                            std::vector<tdbToolComponent*>& tool_components, tdbError& err,
                            tdbToolComponentsDB* components);

  /// As `ImportFromXml`, from a file; every error met is appended to `errors`.
  static bool ImportFromFile(const char* path, const std::vector<std::string>& search_paths,
                             std::vector<tdbTool*>& tools, std::vector<tdbError>& errors,
                             tdbToolComponentsDB* components);
  static bool ImportFromFile(const char* path, const std::vector<std::string>& search_paths,
                             std::vector<tdbToolComponent*>& tool_components,
                             std::vector<tdbError>& errors, tdbToolComponentsDB* components);
};

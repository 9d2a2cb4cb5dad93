#pragma once

#include <map>
#include <string>
#include <string_view>

#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"

namespace tooldb {

class Console;
class ToolFolder;

/// Parameters that an import leaves in a tool: the identity that the file gave it, and the file.
inline constexpr const char* kGuidParameter = "IMPORT.GUID";
inline constexpr const char* kFileParameter = "IMPORT.FILE";

/// What a folder holds while things are taken in: codes, identities and contents.
class FolderIndex {
 public:
  struct Known {
    std::string code;
    std::string text;       ///< as it would be written now
    std::size_t stamp = 0;  ///< of the file's bytes
    std::string guid;
    std::string file;  ///< that it was imported from
    bool met = false;  ///< the present import holds it too
  };

  /// Reads the folder; a tool that cannot be read is reported.
  explicit FolderIndex(ToolFolder& folder);

  /// The tool of that identity, else that of the code if no other identity is known of it; null if
  /// there is none.
  Known* FindTool(const std::string& code, const std::string& guid);
  /// True when a tool has the code, whatever the case of its letters.
  bool HasTool(const std::string& code) const { return tools_.contains(Key(code)); }
  Known& AddTool(tdbTool& tool);

  Known* FindComponent(const std::string& code);
  void AddComponent(const tdbToolComponent& component);

  /// Codes of the tools that came from a file and were not met.
  std::vector<std::string> NotMet(const std::string& file) const;

  std::string TextOf(const tdbItem& item) const;
  /// True when the file of a tool is as it was when it was read.
  bool IsUnchanged(const Known& known) const;

 private:
  static std::string Key(const std::string& code);
  std::size_t StampOf(const std::string& code) const;

  ToolFolder& folder_;
  std::map<std::string, Known> tools_;  // by code in upper case
  std::map<std::string, std::string> keys_of_guids_;
  std::map<std::string, Known> components_;
};

/// The first of "CODE (2)", "CODE (3)" and so on for which `is_taken` is false.
template <class IsTaken>
std::string free_code(const std::string& code, const IsTaken& is_taken) {
  for (int n = 2;; ++n) {
    std::string candidate = code + " (" + std::to_string(n) + ")";
    if (!is_taken(candidate)) return candidate;
  }
}

}  // namespace tooldb

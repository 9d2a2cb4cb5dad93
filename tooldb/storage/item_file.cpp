#include "tooldb/storage/item_file.h"

#include "tooldb/model/text.h"
#include "tooldb/platform/file_name.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/storage/folder_path.h"

namespace tooldb {

std::string item_file_name(const std::string& code, tdbItem& item) {
  return encoded_code(code) + item.GetFileExt();
}

std::string item_file_path(const std::string& folder, tdbItem& item) {
  const std::string name = item_file_name(item.GetCode(), item);
  if (item.GetCode().empty()) throw FileError(folder, "an item without a code has no file");
  const std::string_view problem = new_file_name_problem(name);
  if (!problem.empty()) throw FileError(folder + '/' + name, std::string(problem));
  return path_in(folder, name);
}

std::string item_text(const tdbItem& item, const std::vector<std::string>& search_paths) {
  std::string text;
  item.WriteXml(text, search_paths);
  return text;
}

}  // namespace tooldb

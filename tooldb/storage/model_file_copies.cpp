#include "tooldb/storage/model_file_copies.h"

#include <boost/filesystem/path.hpp>

#include "tooldb/item.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/util.h"

namespace tooldb {

namespace {

/// The n-th name to try for a file: its own, then "name (2).stl" and so on.
std::string candidate_name(const std::string& source, int n) {
  const auto path = boost::filesystem::path(source);
  if (n == 1) return path.filename().string();
  return path.stem().string() + " (" + std::to_string(n) + ")" + path.extension().string();
}

}  // namespace

void ModelFileCopies::CopyFor(tdbItem& item) {
  const std::string source = item.GetShapeFilePath();
  if (source.empty()) return;
  try {
    auto copy = copies_.find(source);
    if (copy == copies_.end()) copy = copies_.emplace(source, CopyOf(source)).first;
    item.SetShapeFilePath(copy->second.c_str());
  } catch (const tdbError& error) {
    if (!first_failure_) first_failure_ = error;
  }
}

std::string ModelFileCopies::CopyOf(const std::string& source) {
  const std::string bytes = file_system().Read(source);
  for (int n = 1;; ++n) {
    std::string target = folder_ + '/' + candidate_name(source, n);
    if (!file_system().IsFile(target)) {
      tdbFileUtil::write_file(target, bytes);
      return target;
    }
    if (file_system().Read(target) == bytes) return target;
  }
}

}  // namespace tooldb

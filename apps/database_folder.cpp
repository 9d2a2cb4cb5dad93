#include "apps/database_folder.h"

namespace tooldb {
namespace {

// How the library says that nothing stands at a path, in the same words on every system.
constexpr std::string_view kNothingThere = "No such file or directory";

}  // namespace

std::string file_message(const std::string& file, const tdbError& error) {
  const std::string text =
      error.message.empty() ? "error " + std::to_string(error.code) : error.message;
  return text.find(file) == std::string::npos ? file + ": " + text : text;
}

std::string file_bytes(const std::string& path) {
  std::string bytes;
  try {
    tdbFileUtil::read_file(path, bytes);
  } catch (const tdbError& error) {
    throw Failure(file_message(path, error));
  }
  return bytes;
}

void add_force_option(CLI::App& app, bool& force) {
  app.add_flag("--force", force, "Write even if the file was changed by someone else meanwhile");
}

void require_unchanged(const std::string& path, const std::string& bytes) {
  if (tdbFileUtil::file_exists(path) && file_bytes(path) == bytes) return;
  throw Failure(path + ": the file was changed since it was read; nothing was written (--force " +
                "overwrites it)");
}

void require_folder(const std::string& path) {
  if (tdbFileUtil::directory_exists(path)) return;
  if (tdbFileUtil::file_exists(path)) throw Failure(path + ": it is a file, not a folder");
  try {
    tdbFileUtil::get_file_count(path, "");
  } catch (const tdbError& error) {
    if (!error.message.ends_with(kNothingThere)) throw Failure(error.message);
  }
  throw Failure("there is no folder '" + path + "'; 'tooldb init' makes one");
}

std::string code_of_file(const std::string& name) {
  std::string stem;
  tdbFileUtil::get_file_name(name, stem);
  return tdbUtil::decoding_code(stem);
}

}  // namespace tooldb

#include "apps/output_file.h"

#include "apps/console.h"
#include "apps/database_folder.h"

namespace tooldb {

void add_output_option(CLI::App& app, std::string& path, const std::string& help) {
  app.add_option("-o,--output", path, help + "; without it, or with -, standard output")
      ->type_name("FILE");
}

void write_output(const std::string& path, std::string_view bytes, Console& console) {
  if (path.empty() || path == "-") return console.Print(bytes);
  try {
    tdbFileUtil::write_file(path, std::string(bytes));
  } catch (const tdbError& error) {
    throw Failure(file_message(path, error));
  }
}

}  // namespace tooldb

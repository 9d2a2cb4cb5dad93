#include "apps/command.h"
#include "apps/console.h"
#include "apps/tool_folder.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

struct Options {
  std::string folder;
  bool components = false;
};

// True when the folder was not there before.
bool create(const std::string& folder) {
  const bool existed = tdbFileUtil::directory_exists(folder);
  tdbToolDB database("tooldb", 0);
  tdbError problem;
  database.SetErrorCallback(
      [](void* user, const tdbToolDB*, tdbError* error) {
        *static_cast<tdbError*>(user) = *error;
        return 0;
      },
      &problem);
  if (!database.Create(folder)) throw Failure(file_message(folder, problem));
  return !existed;
}

void run(const Options& options, Console& console) {
  const bool made = create(options.folder);
  if (options.components) create(options.folder + "/components");
  console.Note(options.folder + (made ? ": made an empty library"
                                      : ": the folder was there already; nothing in it changed"));
}

void add_arguments(CLI::App& app, Options& options) {
  app.add_option("FOLDER", options.folder, "The folder to make")->required();
  app.add_flag("--with-components", options.components,
               "Also make the folder \"components\" inside, for library components");
}

constexpr Example kExamples[] = {
    {"tooldb init lib", "Makes the library folder lib."},
    {"tooldb init lib --with-components", "With a place for holders that tools share."},
};

}  // namespace

extern const Command kInit;
const Command kInit = {
    "init",
    "Makes the folder of a library",
    "A folder that exists is taken as it is, when it can be written. The parent folder must exist.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

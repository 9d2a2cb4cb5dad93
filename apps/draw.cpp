#include <algorithm>
#include <memory>

#include "apps/bodies.h"
#include "apps/command.h"
#include "apps/console.h"
#include "apps/display_text.h"
#include "apps/drawing/contact_sheet.h"
#include "apps/drawing/drawing.h"
#include "apps/output_file.h"
#include "apps/progress.h"
#include "apps/query_option.h"
#include "apps/tool_folder.h"
#include "apps/tree_items.h"
#include "tooldb/util.h"

namespace tooldb {
namespace {

constexpr const char* kContactSheet = "index.html";

struct Options {
  FolderOptions folder;
  std::string code;
  std::string output;
  std::string where;
  bool all = false;
  bool component = false;
};

struct Subject {
  const char* kind;  ///< "tool" or "component"
  std::unique_ptr<tdbTool> tool;

  std::string Name() const { return std::string(kind) + " '" + tool->GetCode() + '\''; }
};

// Raises `Failure` when nothing can be drawn.
void draw(const Subject& subject, const std::string& path, Console& console) {
  tdbTool& tool = *subject.tool;
  const auto bodies = bodies_of(tool, fine_tolerance(tool));
  for (const auto& line : refusals(subject.Name(), bodies)) console.Error(line);
  const std::string drawing = drawing_of(tool);
  if (drawing.empty()) throw Failure(subject.Name() + " has nothing to draw");
  write_output(path, drawing, console);
}

using Tools = std::vector<std::unique_ptr<tdbTool>>;

bool uses(tdbTool& tool, const std::string& component) {
  return std::ranges::any_of(items_below(tool), [&](const TreeItem& entry) {
    return dynamic_cast<tdbToolComponent*>(entry.item) != nullptr &&
           entry.item->GetCode() == component;
  });
}

// A component by itself, as a tool that holds nothing else. Its file knows no unit: it has that of
// the tools that use it.
Subject alone(const tdbToolComponent& component, const Tools& users) {
  auto tool = std::make_unique<tdbTool>(component.GetCode(), component.GetName());
  const auto user = std::ranges::find_if(
      users, [&](const auto& other) { return uses(*other, component.GetCode()); });
  if (user != users.end()) tool->SetUnitOfMeasurement((*user)->GetUnitOfMeasurement());
  if (component.GetName() != component.GetCode()) tool->SetDescr(component.GetName().c_str());
  tool->AddItem(component.Clone());
  tool->Update();
  return {"component", std::move(tool)};
}

// Every drawing of a folder, and the page that shows them.
class Album {
 public:
  Album(std::string folder, std::size_t total, Console& console)
      : folder_(std::move(folder)), console_(console), progress_(console, "drawing", total) {
    MakeFolder(folder_);
  }

  /// @param subfolder  of the drawing; empty or ending in "/"
  void Add(const Subject& subject, const std::string& subfolder) {
    const tdbTool& tool = *subject.tool;
    const std::string file = subfolder + tdbUtil::encoding_code(tool.GetCode()) + ".svg";
    if (!subfolder.empty()) MakeFolder(folder_ + '/' + subfolder);
    try {
      draw(subject, folder_ + '/' + file, console_);
      pictures_.push_back({file, tool.GetCode(), tool.GetDescr()});
    } catch (const Failure& failure) {
      progress_.Hide();
      console_.Error(failure.what());
    }
  }
  void Step() { progress_.Step(); }

  void Finish(const std::string& title) {
    std::stable_partition(pictures_.begin(), pictures_.end(), [](const ContactPicture& picture) {
      return picture.file.find('/') == std::string::npos;  // tools before components
    });
    const std::string page = folder_ + '/' + kContactSheet;
    write_output(page, contact_sheet(title, pictures_), console_);
    console_.Note(counted(pictures_.size(), "drawing") + " in " + folder_ + "; " + page +
                  " shows them all");
  }

 private:
  static void MakeFolder(const std::string& folder) {
    if (!tdbFileUtil::directory_exists(folder)) tdbFileUtil::create_directory(folder);
  }

  std::string folder_;
  Console& console_;
  Progress progress_;
  std::vector<ContactPicture> pictures_;
};

void draw_all(const Options& options, ToolFolder& folder, Console& console) {
  if (options.output.empty() || options.output == "-") {
    throw UsageError("--all needs a folder after -o");
  }
  const auto selected = tool_filter(options.where);
  Tools tools = folder.ReadAll();
  std::vector<tdbToolComponent*> components;
  if (folder.Components() != nullptr && options.where.empty()) {
    components = folder.Components()->All();
  }
  Album album(options.output, tools.size() + components.size(), console);
  for (const tdbToolComponent* component : components) {
    album.Step();
    album.Add(alone(*component, tools), std::string(kComponentsFolder) + '/');
  }
  for (auto& tool : tools) {
    album.Step();
    if (selected(*tool)) album.Add({"tool", std::move(tool)}, "");
  }
  album.Finish(folder.Path());
}

Subject subject_of(const Options& options, ToolFolder& folder) {
  if (!options.component) return {"tool", folder.ReadTool(options.code)};
  if (folder.Components() == nullptr) {
    throw Failure(folder.Path() + " has no components; name their folder with --components");
  }
  return alone(folder.Components()->Require(options.code), folder.ReadAll());
}

void run(const Options& options, Console& console) {
  if (options.all != options.code.empty()) {
    throw UsageError("name one tool, or say --all");
  }
  ToolFolder folder(options.folder, Use::kRead, console);
  if (options.all) return draw_all(options, folder, console);
  draw(subject_of(options, folder), options.output, console);
  if (!options.output.empty()) console.Note("drew " + options.code + " to " + options.output);
}

void add_arguments(CLI::App& app, Options& options) {
  add_folder_arguments(app, options.folder);
  app.add_option("CODE", options.code, "The tool's code");
  app.add_flag("--component", options.component, "CODE is that of a library component");
  add_output_option(app, options.output, "The SVG file to write; with --all the folder");
  app.add_flag("--all", options.all,
               "Draw every tool and component, each into a file named by its code");
  add_where_option(app, options.where);
}

constexpr Example kExamples[] = {
    {"tooldb draw lib T1 -o t1.svg", "Draws T1."},
    {"tooldb draw lib --all -o drawings", "Draws everything, with a page that shows it."},
    {"tooldb draw lib --all -o drills --where \"kind = drill\"", "Draws every drill."},
};

}  // namespace

extern const Command kDraw;
const Command kDraw = {
    "draw",
    "Draws tools to scale, with dimensions",
    "An SVG drawing on a sheet of A4, ready to print; on a screen it follows a light or dark "
    "setting. The tool stands tip down, in section at the left of its axis, from outside at the "
    "right; a turning tool lies with its tip at the left. Cutting part, shank and holder differ in "
    "colour and hatch; the edge that cuts is red. Lengths run from the tip or the programmed "
    "point, which is marked. A tip that would be too small is drawn once more, larger, with a "
    "scale of its own. The scale and the unit of the numbers stand in the title block.\n"
    "\n"
    "With --all a page index.html beside the drawings shows them all. Components are drawn too, "
    "unless --where chooses among the tools. A component has the unit of the tools that use it, "
    "and millimetres when none does.",
    kExamples,
    declare<Options, add_arguments, run>,
    {},
};

}  // namespace tooldb

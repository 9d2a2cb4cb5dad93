#include "tooldb/storage/library_kind.h"

#include "tooldb/model/text.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/util.h"
#include "tooldb/xml_reader.h"

namespace tooldb {

namespace {

using Search = std::vector<std::string>;

/// What the reader hands out, until it is passed on.
template <class T>
class ReadItems {
 public:
  ReadItems() = default;
  ReadItems(const ReadItems&) = delete;
  ReadItems& operator=(const ReadItems&) = delete;
  ~ReadItems() {
    for (T* item : items_) delete item;
  }

  std::vector<T*>& Get() { return items_; }
  void PassOn(LibraryItems& out) {
    out.reserve(out.size() + items_.size());
    for (T* item : items_) out.emplace_back(item);
    items_.clear();
  }

 private:
  std::vector<T*> items_;
};

template <class T>
void read_export_file(const char* path, const ExportContext& context, LibraryItems& items,
                      std::vector<tdbError>& errors) {
  ReadItems<T> read;
  tdbXmlReader::ImportFromFile(path, context.search_paths, read.Get(), errors, context.components);
  read.PassOn(items);
}

template <class T>
void read_export_text(const char* xml, const ExportContext& context, LibraryItems& items,
                      std::vector<tdbError>& errors) {
  ReadItems<T> read;
  tdbError error;
  if (!tdbXmlReader::ImportFromXml(xml, context.search_paths, read.Get(), error,
                                   context.components)) {
    errors.push_back(error);
  }
  read.PassOn(items);
}

void mark_as_component(LibraryItem& item) {
  bool yes = true;
  item.Visit(tdbUtil::set_item_component, &yes);
}

}  // namespace

const LibraryKind kToolLibrary = {
    .extension = kToolFileExtension,
    .read = {"Read: "},
    .read_one = {},
    .reload = {"Reload: "},
    .import_file = {"ImportFromFile: "},
    .import_xml = {"ImportFromXml: "},
    .export_to = {"Export to: "},
    .add = {},
    .remove = {},
    .update = {},
    .remove_all_with_files = {"RemoveAllTools(memory-and-file)", true},
    .reading_of = reading_of_file<tdbTool>,
    .read_export_file = read_export_file<tdbTool>,
    .read_export_text = read_export_text<tdbTool>,
    .prepare = [](LibraryItem&) {},
};

const LibraryKind kComponentLibrary = {
    .extension = kComponentFileExtension,
    .read = {"Read tool components folder: "},
    .read_one = {"Add toolcomponent: "},
    .reload = {"Reload toolcomponents", true},
    .import_file = {"Import toolcomponents from file: "},
    .import_xml = {"Import toolcomponents from xml: "},
    .export_to = {"Export toolcomponents to: "},
    .add = {"AddToolComponent: "},
    .remove = {"RemoveToolComponent: "},
    .update = {"UpdateToolComponent: "},
    // The other way round than for tools; hosts know both texts.
    .remove_all_with_files = {"RemoveAllTools(file-and-memory)", true},
    .reading_of = reading_of_file<tdbToolComponent>,
    .read_export_file = read_export_file<tdbToolComponent>,
    .read_export_text = read_export_text<tdbToolComponent>,
    .prepare = mark_as_component,
};

}  // namespace tooldb

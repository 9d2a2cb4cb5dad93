#include "apps/source_files.h"

#include <algorithm>
#include <filesystem>

#include "apps/command.h"
#include "apps/display_text.h"
#include "apps/tool_folder.h"
#include "tooldb/util.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

namespace fs = std::filesystem;

// How the reader says that a document holds tools only, or components only.
constexpr std::string_view kNoSuchElement = "there is no element <TOOL";

// The byte order of paths puts "a-b" before "a/b": compare part by part.
bool before(const fs::path& a, const fs::path& b) { return a < b; }

std::vector<fs::path> files_below(const fs::path& folder, std::error_code& error) {
  std::vector<fs::path> files;
  const auto options = fs::directory_options::skip_permission_denied;
  for (fs::recursive_directory_iterator next(folder, options, error), end; !error && next != end;
       next.increment(error)) {
    std::error_code ignored;
    if (next->is_regular_file(ignored)) files.push_back(next->path());
  }
  std::ranges::sort(files, before);
  return files;
}

void fail(SourceFile& source, const std::string& why) {
  source.result.notes.push_back({NoteKind::kFailed, why});
}

std::string text_of(const tdbError& error) {
  return error.message.empty() ? "it cannot be read" : error.message;
}

void add_path(std::vector<SourceFile>& sources, const fs::path& path) {
  std::error_code error;
  if (!fs::is_directory(path, error)) {
    sources.push_back({path.generic_string(), true, SourceKind::kUnknown, {}});
    return;
  }
  const auto files = files_below(path, error);
  for (const auto& file : files) {
    sources.push_back({file.generic_string(), false, SourceKind::kUnknown, {}});
  }
  if (!error && !files.empty()) return;
  SourceFile& folder =
      sources.emplace_back(SourceFile{path.generic_string(), true, SourceKind::kUnknown, {}});
  fail(folder, error ? error.message() : "the folder has no files");
}

struct Extension {
  std::string_view text;
  SourceKind kind;
};

constexpr Extension kExtensions[] = {{kToolExtension, SourceKind::kTool},
                                     {kComponentExtension, SourceKind::kComponent}};

// An export begins with the root TOOLDB; older ones may lack the declaration before it.
bool looks_like_document(std::string_view bytes) {
  return bytes.substr(0, 4096).find("<TOOLDB") != std::string_view::npos;
}

SourceKind kind_of(const std::string& path, std::string_view bytes) {
  const std::string extension = lower_text(fs::path(path).extension().string());
  for (const Extension& own : kExtensions) {
    if (extension == own.text) return own.kind;
  }
  if (looks_like_document(bytes)) return SourceKind::kDocument;
  if (find_import_format(fs::path(path).filename().string(), bytes) != nullptr) {
    return SourceKind::kForeign;
  }
  return extension == ".xml" ? SourceKind::kDocument : SourceKind::kUnknown;
}

void read_foreign(SourceFile& source, std::string_view bytes) {
  const fs::path folder = fs::path(source.path).parent_path();
  const auto sibling = [&](const std::string& path) -> std::optional<std::string> {
    const std::string file = (folder / fs::path(path)).generic_string();
    if (!tdbFileUtil::file_exists(file)) return std::nullopt;
    return file_bytes(file);
  };
  source.result = import_tools(bytes, fs::path(source.path).filename().string(), sibling);
}

std::vector<std::string> search_paths_of(const SourceFile& source) {
  const auto folder = fs::path(source.path).parent_path().string();
  return {folder.empty() ? "." : folder};
}

template <class T>
void add_entry(SourceFile& source, T* item, std::unique_ptr<T> ImportEntry::*place) {
  ImportEntry entry;
  entry.source = item->GetCode();
  (entry.*place).reset(item);
  source.result.entries.push_back(std::move(entry));
}

// The errors of reading one kind of element; that a document has none of it is no error.
void take_errors(SourceFile& source, const std::vector<tdbError>& errors) {
  for (const tdbError& error : errors) {
    if (error.message.find(kNoSuchElement) == std::string::npos) fail(source, text_of(error));
  }
}

void read_component_file(SourceFile& source, ToolFolder& folder) {
  tdbError error;
  auto* component = tdbXmlReader::ReadToolComponent(source.path.c_str(), search_paths_of(source),
                                                    error, folder.ComponentsDatabase());
  if (component == nullptr) return fail(source, text_of(error));
  add_entry(source, component, &ImportEntry::component);
}

template <class T>
void read_document(SourceFile& source, ToolFolder& folder, std::unique_ptr<T> ImportEntry::*place) {
  std::vector<T*> items;
  std::vector<tdbError> errors;
  tdbXmlReader::ImportFromFile(source.path.c_str(), search_paths_of(source), items, errors,
                               folder.ComponentsDatabase());
  for (T* item : items) add_entry(source, item, place);
  take_errors(source, errors);
}

void read_tool_file(SourceFile& source, ToolFolder& folder) {
  tdbError error;
  auto* tool = tdbXmlReader::ReadTool(source.path.c_str(), search_paths_of(source), error,
                                      folder.ComponentsDatabase());
  if (tool == nullptr) return fail(source, text_of(error));
  add_entry(source, tool, &ImportEntry::tool);
}

void read_by_kind(SourceFile& source, ToolFolder& folder, std::string_view bytes) {
  if (source.kind == SourceKind::kForeign) {
    read_foreign(source, bytes);
  } else if (source.kind == SourceKind::kComponent) {
    source.result.format = "tooldb component";
    read_component_file(source, folder);
  } else if (source.kind == SourceKind::kDocument) {
    source.result.format = "tooldb document";
    read_document(source, folder, &ImportEntry::component);
  } else if (source.kind == SourceKind::kUnknown && source.named) {
    fail(source, "no known format fits this file");
  }
}

}  // namespace

std::vector<SourceFile> find_sources(const std::vector<std::string>& paths) {
  std::vector<SourceFile> sources;
  for (const auto& path : paths) add_path(sources, path);
  return sources;
}

void read_components(SourceFile& source, ToolFolder& folder) {
  if (!source.result.notes.empty()) return;
  try {
    const std::string bytes = file_bytes(source.path);
    source.kind = kind_of(source.path, bytes);
    read_by_kind(source, folder, bytes);
  } catch (const Failure& failure) {
    fail(source, failure.what());
  }
}

void read_tools(SourceFile& source, ToolFolder& folder) {
  if (source.kind == SourceKind::kTool) {
    source.result.format = "tooldb tool";
    read_tool_file(source, folder);
  } else if (source.kind == SourceKind::kDocument && source.result.notes.empty()) {
    read_document(source, folder, &ImportEntry::tool);
    if (source.result.entries.empty() && source.result.notes.empty()) {
      fail(source, "the document has no tools and no components");
    }
  }
}

void drop_siblings(std::vector<SourceFile>& sources) {
  std::vector<fs::path> taken;
  for (const SourceFile& source : sources) {
    for (const auto& sibling : source.result.siblings) {
      taken.push_back((fs::path(source.path).parent_path() / sibling).lexically_normal());
    }
  }
  std::ranges::sort(taken);
  for (SourceFile& source : sources) {
    if (!std::ranges::binary_search(taken, fs::path(source.path).lexically_normal())) continue;
    if (!source.result.siblings.empty()) continue;
    source.result.entries.clear();
    source.result.notes = {{NoteKind::kMapped, "read with the library that refers to it"}};
  }
}

}  // namespace tooldb

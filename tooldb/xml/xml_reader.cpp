#include "tooldb/xml_reader.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "geom/number_text.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/xml/entry_scanner.h"
#include "tooldb/xml/grammar.h"
#include "tooldb/xml/importer.h"
#include "tooldb/xml/named_errors.h"
#include "tooldb/xml/part_reading.h"
#include "tooldb/xml/text_encoding.h"

namespace tooldb {
namespace {

template <class Part>
Imported<Part> import_text(std::string_view bytes, const std::vector<std::string>& search_paths,
                           tdbToolComponentsDB* components) {
  std::string storage;
  return Importer<Part>(document_text(bytes, storage), {search_paths, finder_in(components)}).Run();
}

template <class Part>
void hand_over(Imported<Part>& imported, std::vector<Part*>& out) {
  out.reserve(out.size() + imported.parts.size());
  for (auto& part : imported.parts) out.push_back(part.release());
}

// One record for all refusals: the first, and how many more there are.
tdbError summary(const std::vector<tdbError>& refusals) {
  tdbError error = refusals.front();
  if (refusals.size() > 1) {
    error.message += " (and more like it: ";
    append_integer(error.message, static_cast<long long>(refusals.size() - 1));
    error.message += ')';
  }
  return error;
}

const char* required(const char* text, const char* what) {
  if (text == nullptr) throw tdbError(kGeneralError, std::string("no ") + what + " was given");
  return text;
}

template <class Part>
Part* read_file(const char* path, const std::vector<std::string>& search_paths, tdbError& err,
                tdbToolComponentsDB* components) {
  return guarded(err, static_cast<Part*>(nullptr), [&] {
    auto part = reading_of_file<Part>(required(path, "path"))
                    ->Finish({search_paths, finder_in(components)});
    return static_cast<Part*>(part.release());
  });
}

// The tools of many files; null with the error filled where one could not be read.
std::vector<std::unique_ptr<tdbTool>> read_files(const std::vector<std::string>& paths,
                                                 const ReadContext& context,
                                                 std::vector<tdbError>& errors) {
  std::vector<std::unique_ptr<tdbTool>> tools(paths.size());
  errors.resize(paths.size());
  read_in_turn(
      paths.size(), context, [&](std::size_t i) { return reading_of_file<tdbTool>(paths[i]); },
      [&](std::size_t i, FileReading& reading) {
        guarded(errors[i], false, [&] {
          tools[i].reset(static_cast<tdbTool*>(reading.Finish(context).release()));
          return true;
        });
      });
  return tools;
}

template <class Part>
bool import_xml(const char* xml_text, const std::vector<std::string>& search_paths,
                std::vector<Part*>& out, tdbError& err, tdbToolComponentsDB* components) {
  return guarded(err, false, [&] {
    auto imported = import_text<Part>(required(xml_text, "text"), search_paths, components);
    hand_over(imported, out);
    if (imported.refusals.empty()) return true;
    err = summary(imported.refusals);
    return false;
  });
}

template <class Part>
bool import_file(const char* path, const std::vector<std::string>& search_paths,
                 std::vector<Part*>& out, std::vector<tdbError>& errors,
                 tdbToolComponentsDB* components) {
  bool all_read = false;
  tdbError error;
  const bool finished = guarded(error, false, [&] {
    const std::string bytes = file_system().Read(required(path, "path"));
    auto imported =
        with_file_name(path, [&] { return import_text<Part>(bytes, search_paths, components); });
    for (auto* list : {&imported.refusals, &imported.notes}) {
      for (tdbError& each : *list) name_file(each, path);
      errors.insert(errors.end(), list->begin(), list->end());
    }
    hand_over(imported, out);
    all_read = imported.refusals.empty();
    return true;
  });
  if (!finished) errors.push_back(error);
  return all_read;
}

bool has_single_entry(std::string_view bytes) {
  std::string storage;
  EntryScanner scanner(document_text(bytes, storage), tag::kTool);
  bool found = false;
  while (const auto entry = scanner.Next()) {
    const bool known = entry->name == tag::kTool || entry->name == tag::kToolComponent;
    found = found || (known && !entry->in_root);
  }
  return found;
}

}  // namespace
}  // namespace tooldb

bool tdbXmlReader::IsTalvikToolFile(const char* path) {
  tdbError ignored;
  return tooldb::guarded(ignored, false, [path] {
    return tooldb::has_single_entry(tooldb::file_system().Read(tooldb::required(path, "path")));
  });
}

tdbTool* tdbXmlReader::ReadTool(const char* path, const std::vector<std::string>& search_paths,
                                tdbError& err, tdbToolComponentsDB* components) {
  return tooldb::read_file<tdbTool>(path, search_paths, err, components);
}

tdbToolComponent* tdbXmlReader::ReadToolComponent(const char* path,
                                                  const std::vector<std::string>& search_paths,
                                                  tdbError& err, tdbToolComponentsDB* components) {
  return tooldb::read_file<tdbToolComponent>(path, search_paths, err, components);
}

bool tdbXmlReader::ReadTools(const std::vector<std::string>& paths,
                             const std::vector<std::string>& search_paths,
                             std::vector<tdbTool*>& tools, std::vector<tdbError>& errors,
                             tdbToolComponentsDB* components) {
  tools.clear();
  errors.clear();
  return tooldb::guarded(false, [&] {
    std::vector<tdbError> reasons;
    auto read = tooldb::read_files(paths, {search_paths, tooldb::finder_in(components)}, reasons);
    tools.reserve(read.size());
    errors = std::move(reasons);
    for (auto& tool : read) tools.push_back(tool.release());
    return std::ranges::find(tools, nullptr) == tools.end();
  });
}

tdbTool* tdbXmlReader::ImportToolFromXml(const char* xml_text,
                                         const std::vector<std::string>& search_paths,
                                         tdbError& err, tdbToolComponentsDB* components) {
  return tooldb::guarded(err, static_cast<tdbTool*>(nullptr), [&] {
    std::string storage;
    const auto document = tooldb::document_text(tooldb::required(xml_text, "text"), storage);
    auto tool = tooldb::EntryReading<tdbTool>(tooldb::first_entry(document, tooldb::tag::kTool))
                    .Finish({search_paths, tooldb::finder_in(components)});
    if (tool->GetCode().empty()) tool->SetCode(tool->GetName());
    return tool.release();
  });
}

bool tdbXmlReader::ImportFromXml(const char* xml_text, const std::vector<std::string>& search_paths,
                                 std::vector<tdbTool*>& tools, tdbError& err,
                                 tdbToolComponentsDB* components) {
  return tooldb::import_xml(xml_text, search_paths, tools, err, components);
}

bool tdbXmlReader::ImportFromXml(const char* xml_text, const std::vector<std::string>& search_paths,
                                 std::vector<tdbToolComponent*>& tool_components, tdbError& err,
                                 tdbToolComponentsDB* components) {
  return tooldb::import_xml(xml_text, search_paths, tool_components, err, components);
}

bool tdbXmlReader::ImportFromFile(const char* path, const std::vector<std::string>& search_paths,
                                  std::vector<tdbTool*>& tools, std::vector<tdbError>& errors,
                                  tdbToolComponentsDB* components) {
  return tooldb::import_file(path, search_paths, tools, errors, components);
}

bool tdbXmlReader::ImportFromFile(const char* path, const std::vector<std::string>& search_paths,
                                  std::vector<tdbToolComponent*>& tool_components,
                                  std::vector<tdbError>& errors, tdbToolComponentsDB* components) {
  return tooldb::import_file(path, search_paths, tool_components, errors, components);
}

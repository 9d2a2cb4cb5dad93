#include "tooldb/xml_reader.h"

#include <iterator>
#include <memory>
#include <optional>
#include <string_view>

#include "geom/number_text.h"
#include "tooldb/model/text.h"
#include "tooldb/platform/error_codes.h"
#include "tooldb/platform/file_name.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/platform/guard.h"
#include "tooldb/xml/entry_reader.h"
#include "tooldb/xml/entry_scanner.h"
#include "tooldb/xml/grammar.h"
#include "tooldb/xml/import_codes.h"
#include "tooldb/xml/text_encoding.h"

namespace tooldb {
namespace {

template <class Part>
struct EntryKind;
template <>
struct EntryKind<tdbTool> {
  static constexpr std::string_view kTag = tag::kTool;
  static constexpr auto kRead = read_tool;
};
template <>
struct EntryKind<tdbToolComponent> {
  static constexpr std::string_view kTag = tag::kToolComponent;
  static constexpr auto kRead = read_component;
};

ComponentFinder finder_in(tdbToolComponentsDB* components) {
  return [components](const std::string& code) -> const tdbToolComponent* {
    return components == nullptr ? nullptr : find_library_component(*components, code);
  };
}

tdbError missing_element(std::string_view name) {
  return tdbError(kGeneralError,
                  "there is no element " + shown_tag(name) + "; is it a file of this kind?");
}

// The first entry of its kind in a document that must be sound to its end.
template <class Part>
std::unique_ptr<Part> read_first(std::string_view document, const ReadContext& context) {
  EntryScanner scanner(document, EntryKind<Part>::kTag);
  std::optional<Entry> first;
  while (auto entry = scanner.Next()) {
    if (!first && entry->name == EntryKind<Part>::kTag) first = std::move(entry);
  }
  if (!first) throw missing_element(EntryKind<Part>::kTag);
  return EntryKind<Part>::kRead(*first, context);
}

template <class Part>
std::unique_ptr<Part> read_text(std::string_view bytes, const ReadContext& context) {
  std::string storage;
  return read_first<Part>(document_text(bytes, storage), context);
}

// What an import has brought.
template <class Part>
struct Imported {
  std::vector<std::unique_ptr<Part>> parts;
  std::vector<tdbError> refusals;  // of entries
  std::vector<tdbError> notes;     // on entries that were read
};

template <class Part>
class Importer {
 public:
  Importer(std::string_view document, const ReadContext& context)
      : scanner_(document, EntryKind<Part>::kTag), context_(context) {}

  Imported<Part> Run() {
    for (bool more = true; more;) {
      try {
        more = ReadNext();
      } catch (const tdbError& refusal) {
        result_.refusals.push_back(refusal);
      }
    }
    const bool nothing = result_.parts.empty() && result_.refusals.empty();
    if (nothing && (other_entries_ || !scanner_.HasRoot())) {
      result_.refusals.push_back(missing_element(EntryKind<Part>::kTag));
    }
    return std::move(result_);
  }

 private:
  bool ReadNext() {
    ScannedEntry scanned = scanner_.Scan();
    if (auto* const refusal = std::get_if<tdbError>(&scanned)) {
      result_.refusals.push_back(std::move(*refusal));
      return true;
    }
    auto* const entry = std::get_if<Entry>(&scanned);
    if (entry == nullptr) return false;
    if (entry->name == EntryKind<Part>::kTag) {
      Take(*entry, EntryKind<Part>::kRead(*entry, context_));
    } else {
      other_entries_ = true;
    }
    return true;
  }

  void Take(const Entry& entry, std::unique_ptr<Part> part) {
    const std::string code = part->GetCode().empty() ? part->GetName() : part->GetCode();
    if (code.empty()) {
      std::string where = "line ";
      append_integer(where, entry.line);
      result_.refusals.emplace_back(
          kEmptyCodeError,
          where + ": a " + entry.name + " has neither code nor name; give it a NAME");
      return;
    }
    part->SetCode(codes_.Unique(code));
    for (const tdbError& note : part->GetErrs()) result_.notes.push_back(note);
    result_.parts.push_back(std::move(part));
  }

  EntryScanner scanner_;
  const ReadContext& context_;
  ImportCodes codes_;
  Imported<Part> result_;
  bool other_entries_ = false;
};

template <class Part>
Imported<Part> import_text(std::string_view bytes, const std::vector<std::string>& search_paths,
                           tdbToolComponentsDB* components) {
  const ComponentFinder finder = finder_in(components);
  std::string storage;
  return Importer<Part>(document_text(bytes, storage), {search_paths, finder}).Run();
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

void name_file(tdbError& error, std::string_view path) {
  error.message.insert(0, std::string(path) + ": ");
}

// Runs a body that reads the content of a file: what it raises names the file.
template <class Body>
auto with_file_name(std::string_view path, Body&& body) {
  try {
    return body();
  } catch (tdbError& error) {
    name_file(error, path);
    throw;
  }
}

const char* required(const char* text, const char* what) {
  if (text == nullptr) throw tdbError(kGeneralError, std::string("no ") + what + " was given");
  return text;
}

template <class Part>
Part* read_file(const char* path, const std::vector<std::string>& search_paths, tdbError& err,
                tdbToolComponentsDB* components) {
  return guarded(err, static_cast<Part*>(nullptr), [&] {
    const std::string bytes = file_system().Read(required(path, "path"));
    const ComponentFinder finder = finder_in(components);
    auto part = with_file_name(path, [&] {
      return read_text<Part>(bytes, {search_paths, finder});
    });
    part->SetCode(decoded_code(std::string(file_stem(path))));
    return part.release();
  });
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

tdbTool* tdbXmlReader::ImportToolFromXml(const char* xml_text,
                                         const std::vector<std::string>& search_paths,
                                         tdbError& err, tdbToolComponentsDB* components) {
  return tooldb::guarded(err, static_cast<tdbTool*>(nullptr), [&] {
    const tooldb::ComponentFinder finder = tooldb::finder_in(components);
    auto tool =
        tooldb::read_text<tdbTool>(tooldb::required(xml_text, "text"), {search_paths, finder});
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

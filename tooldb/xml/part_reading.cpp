#include "tooldb/xml/part_reading.h"

#include "tooldb/model/text.h"
#include "tooldb/platform/error_codes.h"
#include "tooldb/platform/file_name.h"
#include "tooldb/platform/file_system.h"
#include "tooldb/xml/named_errors.h"
#include "tooldb/xml/text_encoding.h"

namespace tooldb {
namespace {

// Raised where a reading ahead of its turn comes to need a component: the library is the host's,
// and copies of what stands in it may call the host back.
struct ComponentIsNeeded {};

template <class Part>
class PartFileReading final : public FileReading {
 public:
  using FileReading::FileReading;

  void Ahead(const ReadContext& context) noexcept override {
    try {
      Load();
    } catch (...) {  // NOLINT(bugprone-empty-catch): `Finish` meets it again
      return;
    }
    entry_->Ahead(context);
  }

  std::unique_ptr<tdbCompositeItem> Finish(const ReadContext& context) override {
    if (!entry_) Load();
    auto part = with_file_name(Path(), [&] { return entry_->Finish(context); });
    part->SetCode(decoded_code(std::string(file_stem(Path()))));
    return part;
  }

 private:
  void Load() {
    bytes_ = file_system().Read(Path());
    with_file_name(Path(), [this] {
      const std::string_view document = document_text(bytes_, converted_);
      entry_.emplace(first_entry(document, EntryKind<Part>::kTag));
    });
  }

  std::string bytes_;
  std::string converted_;                    // the document when it is not the bytes
  std::optional<EntryReading<Part>> entry_;  // borrows the document
};

}  // namespace

tdbError missing_element(std::string_view name) {
  return tdbError(kGeneralError,
                  "there is no element " + shown_tag(name) + "; is it a file of this kind?");
}

Entry first_entry(std::string_view document, std::string_view name) {
  EntryScanner scanner(document, name);
  std::optional<Entry> first;
  while (auto entry = scanner.Next()) {
    if (!first && entry->name == name) first = std::move(entry);
  }
  if (!first) throw missing_element(name);
  return *std::move(first);
}

template <class Part>
void EntryReading<Part>::Ahead(const ReadContext& context) noexcept {
  try {
    ReadContext ahead{context.search_paths, nullptr};
    if (context.find_component) {
      ahead.find_component = [](const std::string&) -> const tdbToolComponent* {
        throw ComponentIsNeeded();
      };
    }
    part_ = Read(ahead);
  } catch (const ComponentIsNeeded&) {  // NOLINT(bugprone-empty-catch): goes on in `Finish`
  } catch (...) {
    parsed_.reset();
  }
}

template <class Part>
std::unique_ptr<Part> EntryReading<Part>::Finish(const ReadContext& context) {
  return part_ ? std::move(part_) : Read(context);
}

template <class Part>
std::unique_ptr<Part> EntryReading<Part>::Read(const ReadContext& context) {
  if (!parsed_) parsed_.emplace(entry_);
  auto part = EntryKind<Part>::Read(*parsed_, context);
  parsed_.reset();
  return part;
}

template class EntryReading<tdbTool>;
template class EntryReading<tdbToolComponent>;

template <class Part>
std::unique_ptr<FileReading> reading_of_file(std::string path) {
  return std::make_unique<PartFileReading<Part>>(std::move(path));
}
template std::unique_ptr<FileReading> reading_of_file<tdbTool>(std::string path);
template std::unique_ptr<FileReading> reading_of_file<tdbToolComponent>(std::string path);

}  // namespace tooldb

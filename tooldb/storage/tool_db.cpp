#include "tooldb/tool_db.h"

#include "tooldb/storage/component_link.h"
#include "tooldb/storage/component_uses.h"
#include "tooldb/storage/database_core.h"
#include "tooldb/storage/tool_order.h"
#include "tooldb/tool.h"
#include "tooldb/tool_components_db.h"

using tooldb::CodeSelection;
using tooldb::guarded;
using tooldb::IfTaken;

struct tdbToolDB::Impl final : tooldb::DatabaseCore<tdbToolDB, tdbTool> {
  explicit Impl(tdbToolDB& self) : DatabaseCore(self, tooldb::kToolLibrary) {}

  void BeforeRemoval(tooldb::LibraryItem&) override {}
  tdbToolComponentsDB* Components() override { return link.Get(); }

  void CopySettings(const Impl& other) {
    CopyCallbacks(other);
    allow_tool = other.allow_tool;
    link = other.link;
  }

  tooldb::ComponentLink link;
  AllowToolCallback allow_tool = nullptr;
};

tdbToolDB::tdbToolDB(const char* name, long flags)
    : tdbObject(name == nullptr ? "" : name), impl_(std::make_unique<Impl>(*this)) {
  tdbObject::SetFlags(flags);
}

tdbToolDB::tdbToolDB(const tdbToolDB& other)
    : tdbObject(other), impl_(std::make_unique<Impl>(*this)) {
  impl_->CopySettings(*other.impl_);
}

tdbToolDB& tdbToolDB::operator=(const tdbToolDB& other) {
  if (this == &other) return *this;
  tdbObject::operator=(other);
  impl_->link.Disconnect(*this);
  impl_->CopySettings(*other.impl_);
  impl_->GetLibrary().AdoptFolder(other.impl_->GetLibrary());
  return *this;
}

tdbToolDB::~tdbToolDB() { impl_->link.Disconnect(*this); }

tdbObject* tdbToolDB::Clone() const {
  return impl_->Guarded(static_cast<tdbObject*>(nullptr), [&] { return new tdbToolDB(*this); });
}

void tdbToolDB::WriteXml(std::string& out, const std::vector<std::string>& search_paths) const {
  impl_->WriteXml(out, search_paths);
}

bool tdbToolDB::Create(std::string folder) {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().Create(folder); });
}

bool tdbToolDB::Init(std::string folder) {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().Init(folder); });
}

bool tdbToolDB::Available() const {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().Available(); });
}

bool tdbToolDB::Read() {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().Read(); });
}

bool tdbToolDB::Reload(const std::vector<std::string>& codes) {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().Reload(codes); });
}

bool tdbToolDB::Import(tdbToolDB* other) {
  return impl_->Guarded(false, [&] {
    if (other == nullptr) throw tdbError(1, "no database given");
    Log("Import: " + other->GetName());
    return impl_->GetLibrary().Import(other->impl_->GetLibrary());
  });
}

bool tdbToolDB::ImportFromFile(const char* path, const std::vector<std::string>& codes) {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().ImportFile(path, codes); });
}

bool tdbToolDB::ImportFromXml(const char* xml, const std::vector<std::string>& codes) {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().ImportXml(xml, codes); });
}

bool tdbToolDB::AddTool(tdbTool* tool, tdbError& error, bool replace) {
  return guarded(error, false, [&] {
    return impl_->GetLibrary().Add(tool, error, replace ? IfTaken::kReplace : IfTaken::kRefuse);
  });
}

bool tdbToolDB::AddTool(tdbTool* tool, bool replace) {
  return impl_->Reported([&](tdbError& error) { return AddTool(tool, error, replace); });
}

bool tdbToolDB::RemoveTool(tdbTool* tool, tdbError& error) {
  return guarded(error, false, [&] { return impl_->GetLibrary().Remove(tool, error); });
}

bool tdbToolDB::RemoveTool(tdbTool* tool) {
  return impl_->Reported([&](tdbError& error) { return RemoveTool(tool, error); });
}

bool tdbToolDB::UpdateTool(tdbTool* tool, tdbError& error) {
  return guarded(error, false, [&] { return impl_->GetLibrary().Update(tool, error); });
}

bool tdbToolDB::UpdateTool(tdbTool* tool) {
  return impl_->Reported([&](tdbError& error) { return UpdateTool(tool, error); });
}

bool tdbToolDB::RenameTool(std::string previous_code, tdbTool* tool, tdbError& error) {
  return guarded(error, false,
                 [&] { return impl_->GetLibrary().Rename(previous_code, tool, error); });
}

bool tdbToolDB::RenameTool(std::string previous_code, tdbTool* tool) {
  return impl_->Reported([&](tdbError& error) { return RenameTool(previous_code, tool, error); });
}

bool tdbToolDB::CloneTool(tdbTool* tool, tdbError& error) {
  return guarded(error, false, [&] { return impl_->GetLibrary().AddClone(tool, error); });
}

void tdbToolDB::Sort(int key, bool ascending) {
  impl_->Guarded([&] { impl_->GetLibrary().Sort(tooldb::tool_order(key), ascending); });
}

void tdbToolDB::AddSearchPaths(const std::vector<std::string>& paths) {
  impl_->Guarded([&] { GetFileManager()->AddSearchPaths(paths); });
}

tdbTool* tdbToolDB::GetTool(int position, int source) { return impl_->At(position, source); }

const tdbTool* tdbToolDB::GetToolByCode(const std::string& code, int source) const {
  return impl_->WithCode(code, source);
}

tdbTool* tdbToolDB::GetToolByCode(const std::string& code, int source) {
  return impl_->WithCode(code, source);
}

bool tdbToolDB::GetToolByCode(const std::string& code, tdbTool& out, int source) {
  return impl_->Guarded(false, [&] {
    std::unique_ptr<tdbTool> stored;
    const tdbTool* tool = impl_->WithCode(code, source);
    if (source != tooldb::kListSource) stored.reset(const_cast<tdbTool*>(tool));
    if (tool != nullptr) out = *tool;
    return tool != nullptr;
  });
}

std::string tdbToolDB::GetToolCodebyPosition(int position, int source) {
  return impl_->Guarded(std::string(), [&] {
    if (source != tooldb::kListSource) return impl_->GetLibrary().CodeOfStored(position);
    const tdbTool* const tool = GetTool(position, source);
    return tool == nullptr ? std::string() : tool->GetCode();
  });
}

int tdbToolDB::GetToolCount(int source) { return impl_->Count(source); }

void tdbToolDB::GetTools(std::vector<tdbTool>& out, int source) {
  impl_->AppendCopies(out, source);
}

bool tdbToolDB::IsToolCodeExists(const std::string& code) { return impl_->IsCodeStored(code); }

tdbTool* tdbToolDB::RefreshTool(const std::string& code) {
  return impl_->Guarded(static_cast<tdbTool*>(nullptr),
                        [&] { return static_cast<tdbTool*>(impl_->GetLibrary().Refresh(code)); });
}

void tdbToolDB::RemoveAllTools(bool also_files, int source) {
  impl_->RemoveAll(also_files, source);
}

void tdbToolDB::RemoveTempTools() {}

bool tdbToolDB::Export(std::string target, std::string name,
                       const std::vector<std::string>& codes) {
  return impl_->Guarded(
      false, [&] { return impl_->GetLibrary().Export(target, name, CodeSelection(codes)); });
}

bool tdbToolDB::ExportOnlyLoaded(std::string target, std::string name,
                                 const std::vector<std::string>& codes,
                                 const std::vector<std::string>& loaded) {
  return impl_->Guarded(false, [&] {
    CodeSelection selection(codes);
    selection.Intersect(loaded);
    return impl_->GetLibrary().Export(target, name, selection);
  });
}

void tdbToolDB::LinkToolComponents(tdbToolComponentsDB* db) {
  if (db != nullptr) impl_->Guarded([&] { impl_->link.Connect(*db, *this); });
}

void tdbToolDB::LoadToolComponent(tdbToolComponent* component) {
  impl_->Guarded([&] {
    if (component == nullptr) return;
    const std::string& code = component->GetCode();
    Log("Load component code: " + code);
    tdbToolComponentsDB* const components = impl_->link.Get();
    if (components == nullptr) return;
    const tdbToolComponent* const definition =
        components->GetToolComponentByCode(code, tooldb::kListSource);
    if (definition == nullptr) {
      Error(21, code);
    } else if (definition != component) {
      tooldb::load_members(*component, *definition);
    }
  });
}

void tdbToolDB::UpdateToolComponents() {
  impl_->Guarded([&] {
    if (impl_->link.Get() == nullptr) return;
    for (tooldb::LibraryItem* tool : impl_->GetLibrary().List().Snapshot()) {
      for (tdbToolComponent* use : tooldb::component_uses(*tool)) LoadToolComponent(use);
    }
  });
}

void tdbToolDB::BeforeDeleteComponent(void* db, tdbToolComponent* component) {
  if (db == nullptr || component == nullptr) return;
  Impl& impl = *static_cast<tdbToolDB*>(db)->impl_;
  impl.Guarded([&] {
    const std::string& code = component->GetCode();
    for (tooldb::LibraryItem* tool : impl.GetLibrary().List().Snapshot()) {
      tooldb::remove_uses(*tool, code);
    }
  });
}

tdbToolComponentsDB* tdbToolDB::GetToolComponentDB() const { return impl_->link.Get(); }

void tdbToolDB::SetAllowToolCallback(AllowToolCallback callback) { impl_->allow_tool = callback; }

bool tdbToolDB::AllowTool(tdbTool* tool) {
  if (impl_->allow_tool == nullptr) return true;
  tdbError ignored;
  return guarded(ignored, false, [&] { return impl_->allow_tool(tool); });
}

void tdbToolDB::SetErrorCallback(ErrorCallback callback, void* user) {
  impl_->SetErrorCallback(callback, user);
}

void tdbToolDB::SetLogCallback(LogCallback callback, void* user) {
  impl_->SetLogCallback(callback, user);
}

void tdbToolDB::Error(int code, const std::string& text) const { impl_->Report(code, text); }

void tdbToolDB::Error(tdbError* error) const {
  if (error != nullptr) impl_->Report(*error);
}

void tdbToolDB::Log(const std::string& message) { impl_->Log(message); }

void tdbToolDB::SetFolderPath(const char* path) { impl_->SetFolderPath(path); }

const std::string& tdbToolDB::GetFolderPath() const { return impl_->GetLibrary().FolderPath(); }

tdbFileManager* tdbToolDB::GetFileManager() { return &impl_->GetLibrary().Files(); }

void tdbToolDB::Deprecated_SetPath(const char* path) { impl_->SetLegacyPath(path); }

const std::string& tdbToolDB::Deprecated_GetTdbPath() const { return impl_->LegacyPath(); }

#include "tooldb/tool_components_db.h"

#include "tooldb/storage/components_db_impl.h"
#include "tooldb/storage/tool_order.h"
#include "tooldb/xml/component_lookup.h"
#include "tooldb/xml/document.h"

using tooldb::CodeSelection;
using tooldb::guarded;
using tooldb::IfTaken;

const tdbToolComponent* tooldb::find_library_component(tdbToolComponentsDB& db,
                                                       const std::string& code) {
  return db.GetToolComponentByCode(code, kListSource);
}

tdbToolComponentsDB::tdbToolComponentsDB() : tdbToolComponentsDB("", 0) {}

tdbToolComponentsDB::tdbToolComponentsDB(const char* name, long flags)
    : tdbObject(name == nullptr ? "" : name), impl_(std::make_unique<Impl>(*this)) {
  tdbObject::SetFlags(flags);
}

tdbToolComponentsDB::tdbToolComponentsDB(const tdbToolComponentsDB& other)
    : tdbObject(other), impl_(std::make_unique<Impl>(*this)) {
  impl_->CopyCallbacks(*other.impl_);
  impl_->CopyBeforeDelete(*other.impl_);
}

tdbToolComponentsDB& tdbToolComponentsDB::operator=(const tdbToolComponentsDB& other) {
  if (this == &other) return *this;
  tdbObject::operator=(other);
  impl_->CopyCallbacks(*other.impl_);
  impl_->CopyBeforeDelete(*other.impl_);
  impl_->GetLibrary().AdoptFolder(other.impl_->GetLibrary());
  return *this;
}

tdbToolComponentsDB::~tdbToolComponentsDB() = default;

tdbObject* tdbToolComponentsDB::Clone() const {
  return impl_->Guarded(static_cast<tdbObject*>(nullptr),
                        [&] { return new tdbToolComponentsDB(*this); });
}

void tdbToolComponentsDB::WriteXml(std::string& out,
                                   const std::vector<std::string>& search_paths) const {
  impl_->WriteXml(out, search_paths);
}

void tdbToolComponentsDB::WriteXml(std::string& out, const std::vector<std::string>& search_paths) {
  impl_->WriteXml(out, search_paths);
}

bool tdbToolComponentsDB::Create(std::string folder) {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().Create(folder); });
}

bool tdbToolComponentsDB::Init(std::string folder) {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().Init(folder); });
}

bool tdbToolComponentsDB::Available() const {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().Available(); });
}

bool tdbToolComponentsDB::Read() {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().Read(); });
}

bool tdbToolComponentsDB::Reload(const std::vector<std::string>& codes) {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().Reload(codes); });
}

bool tdbToolComponentsDB::ImportFromFile(const char* path, const std::vector<std::string>& codes) {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().ImportFile(path, codes); });
}

bool tdbToolComponentsDB::ImportFromXml(const char* xml, const std::vector<std::string>& codes) {
  return impl_->Guarded(false, [&] { return impl_->GetLibrary().ImportXml(xml, codes); });
}

bool tdbToolComponentsDB::AddTool(tdbToolComponent* component, tdbError& error, bool replace) {
  return guarded(error, false, [&] {
    return impl_->GetLibrary().Add(component, error,
                                   replace ? IfTaken::kReplace : IfTaken::kRefuse);
  });
}

bool tdbToolComponentsDB::AddTool(tdbToolComponent* component, bool replace) {
  return impl_->Reported([&](tdbError& error) { return AddTool(component, error, replace); });
}

bool tdbToolComponentsDB::RemoveTool(tdbToolComponent* component, tdbError& error) {
  return guarded(error, false, [&] { return impl_->GetLibrary().Remove(component, error); });
}

bool tdbToolComponentsDB::RemoveTool(tdbToolComponent* component) {
  return impl_->Reported([&](tdbError& error) { return RemoveTool(component, error); });
}

bool tdbToolComponentsDB::UpdateTool(tdbToolComponent* component, tdbError& error) {
  return guarded(error, false, [&] { return impl_->GetLibrary().Update(component, error); });
}

bool tdbToolComponentsDB::UpdateTool(tdbToolComponent* component) {
  return impl_->Reported([&](tdbError& error) { return UpdateTool(component, error); });
}

void tdbToolComponentsDB::Sort(int key, bool ascending) {
  impl_->Guarded([&] { impl_->GetLibrary().Sort(tooldb::component_order(key), ascending); });
}

void tdbToolComponentsDB::AddSearchPaths(const std::vector<std::string>& paths) {
  impl_->Guarded([&] { GetFileManager()->AddSearchPaths(paths); });
}

void tdbToolComponentsDB::SetBeforeDeleteCallback(BeforeDeleteCallback callback, void* user) {
  impl_->before_delete = callback;
  impl_->before_delete_user = user;
}

int tdbToolComponentsDB::GetCount(int source) { return impl_->Count(source); }

tdbToolComponent* tdbToolComponentsDB::GetToolComponent(int position, int source) {
  return impl_->At(position, source);
}

tdbToolComponent* tdbToolComponentsDB::GetToolComponentByCode(const std::string& code, int source) {
  return impl_->WithCode(code, source);
}

void tdbToolComponentsDB::GetTools(std::vector<tdbToolComponent>& out, int source) {
  impl_->AppendCopies(out, source);
}

bool tdbToolComponentsDB::IsToolCodeExists(const std::string& code) {
  return impl_->IsCodeStored(code);
}

bool tdbToolComponentsDB::RemoveToolComponentByCode(std::string code) {
  tdbToolComponent* const component = GetToolComponentByCode(code, tooldb::kListSource);
  if (component == nullptr || !impl_->Remove(*component)) return false;
  delete component;
  return true;
}

void tdbToolComponentsDB::RemoveAllToolComponents(bool also_files, int source) {
  impl_->RemoveAll(also_files, source);
}

bool tdbToolComponentsDB::Export(std::string target, std::string name,
                                 const std::vector<std::string>& codes) {
  return impl_->Guarded(
      false, [&] { return impl_->GetLibrary().Export(target, name, CodeSelection(codes)); });
}

void tdbToolComponentsDB::SetErrorCallback(ErrorCallback callback, void* user) {
  impl_->SetErrorCallback(callback, user);
}

void tdbToolComponentsDB::SetLogCallback(LogCallback callback, void* user) {
  impl_->SetLogCallback(callback, user);
}

void tdbToolComponentsDB::Error(int code, const std::string& text) { impl_->Report(code, text); }

void tdbToolComponentsDB::Error(tdbError* error) {
  if (error != nullptr) impl_->Report(*error);
}

void tdbToolComponentsDB::Log(const std::string& message) { impl_->Log(message); }

void tdbToolComponentsDB::SetFolderPath(const char* path) { impl_->SetFolderPath(path); }

const std::string& tdbToolComponentsDB::GetFolderPath() const {
  return impl_->GetLibrary().FolderPath();
}

tdbFileManager* tdbToolComponentsDB::GetFileManager() { return &impl_->GetLibrary().Files(); }

void tdbToolComponentsDB::Deprecated_SetPath(const char* path) { impl_->SetLegacyPath(path); }

const std::string& tdbToolComponentsDB::Deprecated_GetKtcPath() const {
  return impl_->LegacyPath();
}

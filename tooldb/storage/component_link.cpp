#include "tooldb/storage/component_link.h"

#include "tooldb/storage/components_db_impl.h"
#include "tooldb/tool_db.h"

namespace tooldb {

void ComponentLink::Connect(tdbToolComponentsDB& components, tdbToolDB& tools) {
  Disconnect(tools);
  components_ = &components;
  lifetime_ = components.impl_->lifetime;
  components.SetBeforeDeleteCallback(&tdbToolDB::BeforeDeleteComponent, &tools);
}

void ComponentLink::Disconnect(tdbToolDB& tools) {
  tdbToolComponentsDB* const components = Get();
  if (components != nullptr && components->impl_->before_delete_user == &tools &&
      components->impl_->before_delete == &tdbToolDB::BeforeDeleteComponent) {
    components->SetBeforeDeleteCallback(nullptr, nullptr);
  }
  lifetime_.reset();
}

}  // namespace tooldb

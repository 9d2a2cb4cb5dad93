#pragma once

#include <memory>

#include "tooldb/storage/database_core.h"
#include "tooldb/tool_components_db.h"
#include "tooldb/tool_db.h"
#include "tooldb/tool_parts.h"

struct tdbToolComponentsDB::Impl final
    : tooldb::DatabaseCore<tdbToolComponentsDB, tdbToolComponent> {
  explicit Impl(tdbToolComponentsDB& self)
      : DatabaseCore(self, tooldb::kComponentLibrary), database(self) {}

  void BeforeRemoval(tooldb::LibraryItem& item) override {
    if (before_delete == nullptr) return;
    Shielded([&] { before_delete(before_delete_user, static_cast<tdbToolComponent*>(&item)); });
  }
  tdbToolComponentsDB* Components() override { return &database; }

  /// Copies the callback of a host. That of a linked tool database is not copied: the link is to
  /// the other database, and ends there.
  void CopyBeforeDelete(const Impl& other) {
    const bool is_link = other.before_delete == &tdbToolDB::BeforeDeleteComponent;
    before_delete = is_link ? nullptr : other.before_delete;
    before_delete_user = is_link ? nullptr : other.before_delete_user;
  }

  tdbToolComponentsDB& database;
  BeforeDeleteCallback before_delete = nullptr;
  void* before_delete_user = nullptr;
  /// Expires with the database, for those that refer to it.
  std::shared_ptr<void> lifetime = std::make_shared<char>();
};

#include "tooldb/object.h"

#include "tooldb/model/code_watcher.h"

tdbObject::tdbObject() = default;
tdbObject::tdbObject(const std::string& name) : name_(name) {}
tdbObject::tdbObject(const std::string& name, const std::string& code) : name_(name), code_(code) {}
tdbObject::tdbObject(const tdbObject& other)
    : name_(other.name_),
      code_(other.code_),
      flags_(other.flags_),
      version_(other.version_),
      modified_(other.modified_) {}
tdbObject& tdbObject::operator=(const tdbObject& other) {
  if (this == &other) return *this;
  SetCode(other.code_);
  name_ = other.name_;
  flags_ = other.flags_;
  version_ = other.version_;
  modified_ = other.modified_;
  return *this;
}

tdbObject::~tdbObject() = default;

void tdbObject::SetName(const std::string& name) { name_ = name; }
const std::string& tdbObject::GetName() const { return name_; }
const std::string& tdbObject::GetCode() const { return code_; }
void tdbObject::SetFlags(long flags) { flags_ = flags; }

void tdbObject::SetCode(const std::string& code) {
  if (watcher_ != nullptr) watcher_->OnCodeChange(*this, code);
  code_ = code;
}

bool tdbObject::operator==(const tdbObject& other) const {
  return GetCode() == other.GetCode() && version_ == other.version_ &&
         GetName() == other.GetName() && flags_ == other.flags_;
}

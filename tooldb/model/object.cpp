#include "tooldb/object.h"

tdbObject::tdbObject() = default;
tdbObject::tdbObject(const std::string& name) : name_(name) {}
tdbObject::tdbObject(const std::string& name, const std::string& code) : name_(name), code_(code) {}
tdbObject::tdbObject(const tdbObject& other) = default;
tdbObject& tdbObject::operator=(const tdbObject& other) = default;
tdbObject::~tdbObject() = default;

void tdbObject::SetName(const std::string& name) { name_ = name; }
const std::string& tdbObject::GetName() const { return name_; }
const std::string& tdbObject::GetCode() const { return code_; }
void tdbObject::SetFlags(long flags) { flags_ = flags; }
void tdbObject::SetCode(const std::string& code) { code_ = code; }

bool tdbObject::operator==(const tdbObject& other) const {
  return GetCode() == other.GetCode() && version_ == other.version_ &&
         GetName() == other.GetName() && flags_ == other.flags_;
}

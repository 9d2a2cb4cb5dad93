#pragma once

#include <memory>

class tdbToolComponentsDB;
class tdbToolDB;

namespace tooldb {

/// The components database that a tool database is linked to. Either may be destroyed first.
class ComponentLink {
 public:
  /// Null without a link, and once the components database is gone.
  tdbToolComponentsDB* Get() const { return lifetime_.expired() ? nullptr : components_; }

  /// Links to `components`, and has `tools` called before a component is deleted there.
  void Connect(tdbToolComponentsDB& components, tdbToolDB& tools);
  /// Ends the link, and the call, unless another database has taken that over.
  void Disconnect(tdbToolDB& tools);

 private:
  tdbToolComponentsDB* components_ = nullptr;
  std::weak_ptr<void> lifetime_;
};

}  // namespace tooldb

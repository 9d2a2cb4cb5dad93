#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/tool.h"
#include "tooldb/tool_parts.h"
#include "tooldb/xml/part_reading.h"

namespace tooldb {

inline const std::vector<std::string> kNoPaths;

template <class Object>
std::string xml_of(const Object& object, const std::vector<std::string>& paths = kNoPaths) {
  std::string text;
  object.WriteXml(text, paths);
  return text;
}

/// A components library that is nothing but a list.
class ComponentShelf {
 public:
  /// Adds a component with everything below it marked as a member.
  void Put(std::unique_ptr<tdbToolComponent> component) {
    bool member = true;
    component->Visit([](void* flag, tdbItem* i) { i->SetItemComponent(*static_cast<bool*>(flag)); },
                     &member);
    components_[component->GetCode()] = std::move(component);
  }
  ComponentFinder Finder() const {
    return [this](const std::string& code) -> const tdbToolComponent* {
      const auto found = components_.find(code);
      return found == components_.end() ? nullptr : found->second.get();
    };
  }

 private:
  std::map<std::string, std::unique_ptr<tdbToolComponent>> components_;
};

/// The first entry of a document, read without a database; raises what the reader raises.
template <class Part>
std::unique_ptr<Part> read_as(std::string_view text, const ComponentFinder& finder,
                              const std::vector<std::string>& paths = kNoPaths) {
  return EntryReading<Part>(first_entry(text, EntryKind<Part>::kTag)).Finish({paths, finder});
}

inline std::unique_ptr<tdbTool> tool_from(std::string_view text,
                                          const ComponentFinder& finder = ComponentShelf().Finder(),
                                          const std::vector<std::string>& paths = kNoPaths) {
  return read_as<tdbTool>(text, finder, paths);
}

/// A tool around some children of its element.
inline std::string tool_with(std::string_view children, std::string_view attributes = {}) {
  return "<TOOL NAME=\"T\" " + std::string(attributes) + ">" + std::string(children) + "</TOOL>";
}

}  // namespace tooldb

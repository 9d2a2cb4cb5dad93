#include "tooldb/storage/component_uses.h"

#include <algorithm>
#include <map>
#include <memory>

#include "tooldb/model/text.h"
#include "tooldb/model/tree_walk.h"
#include "tooldb/util.h"

namespace tooldb {

namespace {

/// The tool's own item that hangs on a component, taken off it.
struct Attachment {
  std::unique_ptr<tdbItem> item;
  std::string parent_chain;
  Transformation<double> placement;  ///< in the frame in which the component is placed
};

tdbCompositeItem* parent_of(const tdbItem& item) {
  return dynamic_cast<tdbCompositeItem*>(item.GetParent());
}

/// The position of `item` in the frame in which `component`, above it, is placed.
Transformation<double> placement_beside(const tdbItem& component, const tdbItem& item) {
  Transformation<double> placement = item.GetPos();
  for (const tdbItem* i = item.GetParent(); i != nullptr; i = i->GetParent()) {
    placement = i->GetPos() * placement;
    if (i == &component) break;
  }
  return placement;
}

/// The items that are no members but hang on one, or on the component itself.
std::vector<tdbItem*> attached_items(tdbToolComponent& component) {
  std::vector<tdbItem*> attached;
  std::vector<tdbCompositeItem*> open = {&component};
  while (!open.empty()) {
    tdbCompositeItem& group = *open.back();
    open.pop_back();
    for (unsigned i = 0; i < group.GetItemCount(); ++i) {
      tdbItem* const child = group.GetItem(i);
      if (!child->IsComponent()) {
        attached.push_back(child);
      } else if (auto* const member = dynamic_cast<tdbCompositeItem*>(child)) {
        open.push_back(member);
      }
    }
  }
  return attached;
}

std::vector<Attachment> detach(tdbToolComponent& component) {
  const std::vector<tdbItem*> attached = attached_items(component);
  std::vector<Attachment> attachments;
  attachments.reserve(attached.size());
  for (tdbItem* item : attached) {
    Attachment attachment;
    attachment.parent_chain = parent_chain(*item->GetParent());
    attachment.placement = placement_beside(component, *item);
    parent_of(*item)->RemoveItem(item, true);
    attachment.item.reset(item);
    attachments.push_back(std::move(attachment));
  }
  return attachments;
}

/// Every composite at or below `component` that is a member, by its chain of names.
std::map<std::string, tdbCompositeItem*> places_in(tdbToolComponent& component) {
  std::map<std::string, tdbCompositeItem*> places;
  places.emplace(parent_chain(component), &component);
  for (auto* member : parts_below<tdbCompositeItem>(component)) {
    places.emplace(parent_chain(*member), member);
  }
  return places;
}

/// Hangs the item beside the component, or on it where there is no place beside.
void move_up(Attachment& attachment, tdbToolComponent& component) {
  tdbCompositeItem* const parent = parent_of(component);
  if (parent != nullptr) attachment.item->SetPos(attachment.placement);
  (parent != nullptr ? *parent : component).AddItem(attachment.item.release());
}

void report_lost_place(tdbToolComponent& use, const Attachment& attachment) {
  auto& root = static_cast<tdbCompositeItem&>(*use.GetRoot());
  root.PushError(tdbError(1, "component " + use.GetCode() + " has no member " +
                                 attachment.parent_chain + " any more: what hung on it, " +
                                 attachment.item->GetName() + ", was moved up"));
}

void mark_members(tdbToolComponent& use) {
  bool yes = true;
  for (unsigned i = 0; i < use.GetItemCount(); ++i) {
    use.GetItem(i)->Visit(tdbUtil::set_item_component, &yes);
    use.GetItem(i)->Visit(tdbUtil::set_item_modified, &yes);
  }
}

bool remove_use(tdbToolComponent& use) {
  for (Attachment& attachment : detach(use)) move_up(attachment, use);
  return parent_of(use)->RemoveItem(&use, false);
}

}  // namespace

std::vector<tdbToolComponent*> component_uses(tdbCompositeItem& root) {
  std::vector<tdbToolComponent*> uses = parts_below<tdbToolComponent>(root);
  std::erase_if(uses, [](const tdbToolComponent* component) { return component->IsComponent(); });
  return uses;
}

void load_members(tdbToolComponent& use, const tdbToolComponent& definition) {
  std::vector<std::unique_ptr<tdbItem>> members;
  for (unsigned i = 0; i < definition.GetItemCount(); ++i) {
    members.push_back(std::unique_ptr<tdbItem>(definition.GetItem(i)->Clone()));
  }
  std::vector<Attachment> attachments = detach(use);
  use.RemoveItems(false);
  for (auto& member : members) use.AddItem(member.release());
  mark_members(use);

  const auto places = places_in(use);
  for (Attachment& attachment : attachments) {
    const auto place = places.find(attachment.parent_chain);
    if (place != places.end()) {
      place->second->AddItem(attachment.item.release());
    } else {
      report_lost_place(use, attachment);
      move_up(attachment, use);
    }
  }
}

void remove_uses(tdbCompositeItem& root, const std::string& code) {
  bool removed = true;
  while (removed) {
    const auto components = parts_below<tdbToolComponent>(root);
    const auto use = std::ranges::find(components, code, &tdbToolComponent::GetCode);
    removed = use != components.end() && remove_use(**use);
  }
}

}  // namespace tooldb

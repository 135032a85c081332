#include "ports/desktop/OfferedMenus.h"

#include <utility>

#include "platform/Platform.h"
#include "ports/desktop/MenuRows.h"

namespace sprig::desktop {

using platform::Menu;
using platform::MenuItem;

namespace {

void complainOfTemplatesLeftOut(std::size_t number) {
  platform::current().systemLog.log("The menu has no room for the last " + std::to_string(number) +
                                    " templates");
}

}  // namespace

std::unique_ptr<Menu> OfferedMenus::build(const MenuContext& context) {
  controller.concern(context.kind, context.targets);
  return extension.menu(context.kind);
}

std::vector<wire::Row> OfferedMenus::rows(const MenuContext& context) {
  const auto menu = build(context);
  if (!menu) return {};
  auto flat = menuRows(*menu);
  if (flat.leftOut > 0) complainOfTemplatesLeftOut(flat.leftOut);
  for (const auto& [action, item] : flat.entries) {
    offered.insert_or_assign(action, Entry{item->title, item->identifier, item->action, item->target});
  }
  return std::move(flat.rows);
}

bool OfferedMenus::offers(const std::string& action, const MenuContext& context) {
  // The menu may come from a process before this one.
  if (!offered.contains(action)) static_cast<void>(rows(context));
  return offered.contains(action);
}

void OfferedMenus::perform(const std::string& action, const MenuContext& context) {
  static_cast<void>(rows(context));
  const auto entry = offered.find(action);
  if (entry == offered.end() || entry->second.target == nullptr) return;
  auto sender = MenuItem::titled(entry->second.title);
  sender.identifier = entry->second.identifier;
  sender.action = entry->second.action;
  sender.target = entry->second.target;
  sender.target->performAction(sender.action, sender);
}

}  // namespace sprig::desktop

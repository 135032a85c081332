// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/dolphin/DolphinItems.h"

#include <QIcon>
#include <utility>

#include "filemanagers/client/guardCallback.h"
#include "filemanagers/dolphin/ClickOrigin.h"
#include "filemanagers/dolphin/sendPick.h"

namespace sprig::filemanagers {

namespace {

/// What an item needs when it is picked.
struct Source {
  std::shared_ptr<const MenuRequest> request;
  QPointer<QWidget> window;
};

/// A tab would begin the text of a shortcut.
QString qtLabelOf(const MenuEntry& entry) {
  return QString::fromStdString(escapeMnemonics(entry, '&')).replace(QLatin1Char('\t'), QLatin1Char(' '));
}

QIcon iconOf(const MenuEntry& entry) {
  return QIcon::fromTheme(QString::fromStdString(entry.icon),
                          QIcon::fromTheme(QString::fromLatin1(wire::documentIcon)));
}

void fill(QMenu& menu, const std::vector<MenuEntry>& entries, const Source& source);

QAction* addItem(QMenu& menu, const MenuEntry& entry, const Source& source) {
  if (entry.type == MenuEntry::Type::submenu) {
    auto* submenu = menu.addMenu(qtLabelOf(entry));
    fill(*submenu, entry.children, source);
    return submenu->menuAction();
  }
  auto* item = menu.addAction(qtLabelOf(entry));
  if (entry.action.empty()) return item;
  QObject::connect(
      item, &QAction::triggered, item, [source, picked = PickedEntry{entry.action, entry.title}] {
        guardCallback([&] {
          withClickOrigin(source.window, [request = source.request, picked](const ClickOrigin& origin) {
            guardCallback([&] { sendPick(picked, *request, origin); });
          });
        });
      });
  return item;
}

void fill(QMenu& menu, const std::vector<MenuEntry>& entries, const Source& source) {
  for (const auto& entry : entries) {
    if (entry.type == MenuEntry::Type::separator) {
      menu.addSeparator();
      continue;
    }
    auto* item = addItem(menu, entry, source);
    if (!entry.icon.empty()) item->setIcon(iconOf(entry));
    item->setEnabled(entry.isEnabled);
  }
}

/// The menus that an action is in.
QList<QWidget*> widgetsOf(const QAction& action) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
  QList<QWidget*> widgets;
  for (auto* object : action.associatedObjects()) {
    if (auto* widget = qobject_cast<QWidget*>(object)) widgets.append(widget);
  }
  return widgets;
#else
  return action.associatedWidgets();
#endif
}

}  // namespace

DolphinItems::DolphinItems(GDBusConnection& connection)
    : client({.kinds = {wire::Kind::items, wire::Kind::background},
              .menusUpdated = [this] { showLateItems(); },
              .connection = &connection}) {}

DolphinItems::~DolphinItems() { delete menu; }

QList<QAction*> DolphinItems::itemsFor(MenuRequest newRequest, QWidget* window) {
  delete menu;
  if (newRequest.targets.empty()) return {};
  request = std::make_shared<const MenuRequest>(std::move(newRequest));
  menu = new QMenu(window);
  if (const auto entries = client.menu(request->kind, request->targets.front())) {
    fill(*menu, *entries, {request, menu->parentWidget()});
  } else {
    place = menu->addAction(QString());
    place->setVisible(false);
  }
  return menu->actions();
}

void DolphinItems::showLateItems() {
  if (!place) return;
  const auto entries = client.menu(request->kind, request->targets.front());
  if (!entries) return;
  fill(*menu, *entries, {request, menu->parentWidget()});
  const auto items = menu->actions().mid(1);
  for (auto* widget : widgetsOf(*place)) {
    if (widget != menu) widget->insertActions(place, items);
  }
  delete place;
}

}  // namespace sprig::filemanagers

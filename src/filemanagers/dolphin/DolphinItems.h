// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QMenu>
#include <QPointer>
#include <memory>

#include "filemanagers/client/ExtensionClient.h"

namespace sprig::filemanagers {

/// The items of Sprig's menu as Dolphin shows them, those of one menu at a time: Dolphin keeps whatever it is
/// given for as long as its window is there. It asks once for each menu that it opens, so items that are late
/// go into the open menu.
///
/// Threads: main thread.
class DolphinItems {
 public:
  /// `connection` is that to the session bus.
  explicit DolphinItems(GDBusConnection& connection);
  ~DolphinItems();
  DolphinItems(const DolphinItems&) = delete;
  DolphinItems& operator=(const DolphinItems&) = delete;

  /// What Dolphin gets when it asks for a menu; invisible where there is no menu, or not yet. They belong to
  /// this and go with the next call, out of a menu that still shows them, too. `window` may be null.
  QList<QAction*> itemsFor(MenuRequest newRequest, QWidget* window);

 private:
  void showLateItems();

  std::shared_ptr<const MenuRequest> request;
  /// Holds the items, and is never shown itself. May go with its window.
  QPointer<QMenu> menu;
  /// Where late items belong; null when there are none to come.
  QPointer<QAction> place;
  ExtensionClient client;
};

}  // namespace sprig::filemanagers

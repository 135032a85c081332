// SPDX-License-Identifier: GPL-3.0-or-later

#include <KAbstractFileItemActionPlugin>
#include <KPluginFactory>
#include <QAbstractEventDispatcher>
#include <QAction>

#include "filemanagers/client/guardCallback.h"
#include "filemanagers/dolphin/DolphinItems.h"
#include "filemanagers/dolphin/FileManagerObject.h"
#include "filemanagers/dolphin/menuRequestFor.h"

namespace sprig::filemanagers {

namespace {

/// A connection to the session bus of our own: Dolphin's is not GLib's, and GLib's common one would end
/// Dolphin together with the bus. Dolphin, which is on that bus already, waits for it, so that its first menu
/// is complete. Null when there is no bus.
wire::ObjectPointer<GDBusConnection> openBus() {
  const wire::TextPointer address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (!address) return nullptr;
  constexpr int flags =
      G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION;
  return wire::ObjectPointer<GDBusConnection>(g_dbus_connection_new_for_address_sync(
      address.get(), GDBusConnectionFlags(flags), nullptr, nullptr, nullptr));
}

/// The extension's answers come from GLib's main loop, which Qt runs unless it was told not to.
bool runsMainLoopOfGLib() {
  const auto* dispatcher = QAbstractEventDispatcher::instance();
  return dispatcher && dispatcher->inherits("QEventDispatcherGlib");
}

}  // namespace

/// What Dolphin makes of this module, once for each of its windows.
class DolphinPlugin : public KAbstractFileItemActionPlugin {
  Q_OBJECT

 public:
  explicit DolphinPlugin(QObject* parent, const QVariantList& /*arguments*/)
      : KAbstractFileItemActionPlugin(parent) {
    guardCallback([&] {
      const auto bus = runsMainLoopOfGLib() ? openBus() : nullptr;
      if (bus) {
        items = std::make_unique<DolphinItems>(*bus);
        FileManagerObject::exportOnce();
      } else {
        g_warning("Sprig gives no menus: it needs the session bus, and a Qt that runs GLib's main loop");
      }
    });
  }

  QList<QAction*> actions(const KFileItemListProperties& selection, QWidget* window) override {
    return guardCallback([&]() -> QList<QAction*> {
      if (!items) return {};
      return items->itemsFor(menuRequestFor(selection, window), window);
    });
  }

 private:
  std::unique_ptr<DolphinItems> items;
};

K_PLUGIN_CLASS_WITH_JSON(DolphinPlugin, "sprig-dolphin.json")

}  // namespace sprig::filemanagers

#include "module.moc"

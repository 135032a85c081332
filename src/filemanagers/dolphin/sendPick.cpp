// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/dolphin/sendPick.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <memory>

#include "wire/Interface.h"

namespace sprig::filemanagers {

namespace {

QStringList textsOf(const std::vector<std::string>& texts) {
  QStringList list;
  for (const auto& text : texts) list.append(QString::fromStdString(text));
  return list;
}

QVariantMap platformData(const PickedEntry& entry, const ClickOrigin& origin) {
  QVariantMap data;
  const auto add = [&](const char* key, const std::string& text) {
    if (!text.empty()) data.insert(QString::fromLatin1(key), QString::fromStdString(text));
  };
  add(wire::activationTokenKey, origin.activationToken);
  add(wire::parentWindowKey, origin.parentWindow);
  add(wire::titleKey, entry.title);
  return data;
}

void answered(QDBusPendingCallWatcher* watcher) {
  if (watcher->isError())
    g_warning("Sprig did not take the pick: %s", qPrintable(watcher->error().message()));
  watcher->deleteLater();
}

}  // namespace

void sendPick(const PickedEntry& entry, const MenuRequest& request, const ClickOrigin& origin) {
  auto call = QDBusMessage::createMethodCall(
      QString::fromLatin1(wire::busName), QString::fromLatin1(wire::objectPath),
      QString::fromLatin1(wire::interfaceName), QStringLiteral("Activate"));
  call << QString::fromStdString(entry.action) << static_cast<std::uint32_t>(request.kind)
       << textsOf(request.targets) << platformData(entry, origin);
  const auto pending = QDBusConnection::sessionBus().asyncCall(call);
  auto watcher = std::make_unique<QDBusPendingCallWatcher>(pending);
  QObject::connect(watcher.get(), &QDBusPendingCallWatcher::finished, watcher.get(), answered);
  // Its own end is its answer's.
  watcher.release()->setParent(QCoreApplication::instance());
}

}  // namespace sprig::filemanagers

// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/dolphin/FileManagerObject.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QUrl>
#include <optional>

#include "filemanagers/client/guardCallback.h"
#include "filemanagers/dolphin/recordCreation.h"
#include "filemanagers/dolphin/selectInWindow.h"
#include "wire/FileUri.h"
#include "wire/Interface.h"

namespace sprig::filemanagers {

namespace {

/// A local file as Qt names it; nothing for a name that Qt can't hold.
std::optional<QUrl> fileOf(const QString& uri) {
  const auto path = wire::pathFromUri(uri.toStdString());
  if (!path) return std::nullopt;
  const auto name = QFile::decodeName(path->c_str());
  if (QFile::encodeName(name).toStdString() != *path) return std::nullopt;
  return QUrl::fromLocalFile(name);
}

}  // namespace

void FileManagerObject::exportOnce() {
  auto bus = QDBusConnection::sessionBus();
  const auto path = QString::fromLatin1(wire::fileManagerPath);
  if (bus.objectRegisteredAt(path) != nullptr) return;
  bus.registerVirtualObject(path, new FileManagerObject(QCoreApplication::instance()));
}

/// The extension knows what it can ask.
QString FileManagerObject::introspect(const QString& /*path*/) const { return {}; }

bool FileManagerObject::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  return guardCallback([&] {
    if (message.interface() != QLatin1String(wire::fileManagerInterface)) return false;
    const auto arguments = message.arguments();
    const auto answer = [message, connection](bool result) { connection.send(message.createReply(result)); };
    const auto file = arguments.isEmpty() ? std::nullopt : fileOf(arguments.first().toString());
    if (message.member() == QLatin1String("RecordCreation") && message.signature() == QLatin1String("s")) {
      answer(file && recordCreation(*file));
    } else if (message.member() == QLatin1String("Select") && message.signature() == QLatin1String("ss")) {
      if (file) {
        selectInWindow(*file, arguments.at(1).toString(), answer);
      } else {
        answer(false);
      }
    } else {
      return false;
    }
    return true;
  });
}

}  // namespace sprig::filemanagers

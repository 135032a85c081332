// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusVirtualObject>

namespace sprig::filemanagers {

/// What Sprig's extension can ask of Dolphin, on Dolphin's own connection to the session bus, as
/// com.kestrel.Sprig.FileManager1.xml says.
///
/// Threads:   main thread.
/// Ownership: belongs to the application.
/// Failure:   calls that make no sense get an error.
class FileManagerObject : public QDBusVirtualObject {
 public:
  /// Makes the one of this process, unless it is there already.
  static void exportOnce();

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  using QDBusVirtualObject::QDBusVirtualObject;
};

}  // namespace sprig::filemanagers

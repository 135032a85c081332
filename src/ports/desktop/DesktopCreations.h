// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include "platform/Creations.h"
#include "ports/desktop/Click.h"
#include "ports/desktop/Notification.h"
#include "ports/linux/CreationJournal.h"
#include "wire/Pointers.h"

namespace sprig::desktop {

/// Creations behind file managers: kept in the journal, put on the list of what can be undone in the file
/// manager that was clicked in, and where that has none, told of in a notification that has a button for it.
///
/// Threads:   the main thread, whose main context must not run any more once this has gone.
/// Ownership: holds the connection.
/// Failure:   silent, but for a creation that the user wants taken back and that can't be: a notification
/// says
///            why.
class DesktopCreations final : public platform::Creations {
 public:
  DesktopCreations(GDBusConnection& connection, platform::FileURL journalFolder);

  /// What is created from now on was asked for by this click.
  void setClick(Click newClick) { click = std::move(newClick); }

  void created(const platform::FileURL& file) override;

 private:
  enum class Recorded { no, inFileManager };

  void askFileManager(const ports::Creation& creation);
  static void fileManagerAnswered(GObject* connection, GAsyncResult* result, void* announcement) noexcept;
  void notify(const ports::Creation& creation, Recorded recorded);
  void undo(const ports::Creation& creation);
  static void trashed(GObject* file, GAsyncResult* result, void* announcement) noexcept;
  void remove(const ports::Creation& creation);
  void explain(const std::string& reason);

  const wire::ObjectPointer<GDBusConnection> bus;
  ports::CreationJournal journal;
  Notification notification;
  Click click;
};

}  // namespace sprig::desktop

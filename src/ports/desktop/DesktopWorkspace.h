// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "platform/Workspace.h"
#include "ports/desktop/Click.h"
#include "wire/Pointers.h"

namespace sprig::desktop {

/// Other programs of the session. A file is revealed in the file manager that was clicked in, which is
/// started again if it was closed meanwhile; where that can't be, in the session's file manager, or else by
/// opening its folder with the default program.
///
/// Threads:   main thread; results come in through its main context.
/// Ownership: holds the connection.
/// Failure:   what can't be shown at all is a line in the system log.
class DesktopWorkspace final : public platform::Workspace {
 public:
  /// `timeLimit` is for each program asked, its start included.
  explicit DesktopWorkspace(GDBusConnection& connection,
                            std::chrono::milliseconds timeLimit = std::chrono::seconds(15));

  /// What is shown from now on was asked for by this click.
  void setClick(Click newClick) { click = std::move(newClick); }

  void activateFileViewerSelecting(const std::vector<platform::FileURL>& files) override;
  bool open(const std::string& url) override;

 private:
  const wire::ObjectPointer<GDBusConnection> bus;
  const std::chrono::milliseconds limit;
  Click click;
};

}  // namespace sprig::desktop

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <optional>
#include <string>

#include "dialog/ColorScheme.h"
#include "ports/desktop/DesktopApplication.h"
#include "ports/desktop/DesktopPlatform.h"
#include "ports/linux/LinuxSystemLog.h"
#include "settings/SettingsModel.h"
#include "settings/window/SettingsWindow.h"
#include "settings/window/SingleInstance.h"

namespace sprig::settings {

/// The settings program: one instance in a session, which is started by hand, by a URL or by the bus.
///
/// Threads: main thread.
class SettingsApplication {
 public:
  /// `activationToken` lets the first window take the focus; empty for none.
  explicit SettingsApplication(std::string activationToken);

  /// Runs until the window is closed; the program's exit status.
  int run(int argc, char** argv);

 private:
  void start(GDBusConnection& bus);
  void followConfiguration();
  void showWindow();
  void dropWindow();
  void open(GFile** files, int count);

  dialog::ColorScheme colorScheme;
  SingleInstance instance;
  ports::LinuxSystemLog systemLog;
  desktop::DesktopApplication alerts;
  std::optional<desktop::DesktopPlatform> desktop;
  std::optional<SettingsModel> model;
  std::shared_ptr<SettingsWindow> window;
};

}  // namespace sprig::settings

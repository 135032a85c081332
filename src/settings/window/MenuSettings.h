// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>

#include "settings/SettingsModel.h"

namespace sprig::settings {

/// The page with what holds for all templates.
///
/// Threads:   main thread.
/// Ownership: the model outlives this; its widgets belong to the window, which this must not outlive.
class MenuSettings {
 public:
  explicit MenuSettings(SettingsModel& settingsModel);
  MenuSettings(const MenuSettings&) = delete;
  MenuSettings& operator=(const MenuSettings&) = delete;

  GtkWidget* widget() const { return page; }

  /// Shows what the model has now.
  void update();

 private:
  GtkWidget* makeGroup(const char* title, const char* name);
  void change(const std::function<void(AppSettingsItem&)>& edit);

  SettingsModel& model;
  GtkWidget* const column;
  GtkWidget* const page;
  GtkWidget* const showsMenu;
  GtkWidget* const count;
  GtkWidget* const sections;
  GtkWidget* const asks;
  GtkWidget* const notifies;
  bool isUpdating = false;
};

}  // namespace sprig::settings

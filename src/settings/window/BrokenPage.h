// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>
#include <string>

#include "settings/SettingsModel.h"

namespace sprig::settings {

/// The page for a configuration that can't be read: its text, the place of the fault, and the ways out.
///
/// Threads:   main thread.
/// Ownership: the model outlives this; its widgets belong to the window, which this must not outlive.
class BrokenPage {
 public:
  /// `tellUser` shows a message.
  BrokenPage(SettingsModel& settingsModel, std::function<void(const std::string&)> tellUser);
  BrokenPage(const BrokenPage&) = delete;
  BrokenPage& operator=(const BrokenPage&) = delete;

  GtkWidget* widget() const { return page; }

  /// Shows what the model has now; what was typed stays if the file has not changed.
  void update();

 private:
  GtkWidget* makeButtons();
  void check();
  void mark(const TextFault& fault);
  void save();
  void startAfresh();

  SettingsModel& model;
  const std::function<void(const std::string&)> tell;
  GtkWidget* const page;
  GtkWidget* const reason;
  GtkWidget* const view;
  GtkTextBuffer* const buffer;
  GtkTextTag* const markedLine;
  GtkWidget* const saveButton;
  GtkWidget* const restoreButton;
  GtkWidget* const afreshButton;
  /// The file's text as it is shown here; absent before the first.
  std::optional<std::string> shown;
};

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>
#include <string>

#include "settings/SettingsModel.h"

namespace sprig::settings {

/// The page with the configuration as text: for one that can't be read, with the place of the fault and the
/// ways out, and for who wants to edit it so.
///
/// Threads:   main thread.
/// Ownership: the model outlives this; its widgets belong to the window, which this must not outlive.
class TextPage {
 public:
  /// `tellUser` shows a message.
  TextPage(SettingsModel& settingsModel, std::function<void(const std::string&)> tellUser);
  TextPage(const TextPage&) = delete;
  TextPage& operator=(const TextPage&) = delete;

  GtkWidget* widget() const { return page; }

  /// Shows what the model has now; what was typed stays until the user has decided.
  void update();
  /// Whether something was typed that is not saved.
  bool isTyped() const;
  /// Forgets what was typed.
  void reload();

 private:
  GtkWidget* makeBar();
  GtkWidget* makeButtons();
  void keepMine();
  void check();
  void updateButtons(bool isSaveable);
  void mark(const TextFault& fault);
  void save();
  bool replaceTyped(const std::function<bool()>& replace);
  void startAfresh();

  SettingsModel& model;
  const std::function<void(const std::string&)> tell;
  GtkWidget* const page;
  GtkWidget* const title;
  GtkWidget* const explanation;
  GtkWidget* const reason;
  GtkWidget* const bar;
  GtkWidget* const view;
  GtkTextBuffer* const buffer;
  GtkTextTag* const markedLine;
  GtkWidget* const saveButton;
  GtkWidget* const restoreButton;
  GtkWidget* const afreshButton;
  /// The file's text that what is typed was made of; absent before the first.
  std::optional<std::string> shown;
};

}  // namespace sprig::settings

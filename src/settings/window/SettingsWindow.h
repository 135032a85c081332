// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "settings/SettingsModel.h"
#include "settings/SettingsURL.h"
#include "settings/window/ImportPage.h"
#include "settings/window/MenuSettings.h"
#include "settings/window/TemplateEditor.h"
#include "settings/window/TemplateList.h"
#include "settings/window/TextPage.h"
#include "settings/window/Toast.h"

namespace sprig::settings {

/// The window of the settings program. It shows what the model has, and forwards what the user does.
///
/// Threads:   main thread, after GTK was initialised.
/// Ownership: the model outlives this; the window on the screen lives as long as this.
class SettingsWindow {
 public:
  /// `whenClosed` is called when the user has closed the window. This has no use then, but is not to be
  /// destroyed before the event has been dealt with: that holds on to widgets, which call this when they go.
  SettingsWindow(SettingsModel& settingsModel, std::function<void()> whenClosed);
  ~SettingsWindow();
  SettingsWindow(const SettingsWindow&) = delete;
  SettingsWindow& operator=(const SettingsWindow&) = delete;

  /// Comes to the front, as far as the desktop lets it, by a token if there is one.
  void present(const std::string& activationToken);
  /// Shows what a URL wants, if there is such a thing.
  void show(const SettingsTarget& target);
  /// Shows what files with templates to share offer; makes templates of other files.
  void open(const std::vector<platform::FileURL>& files);

 private:
  GtkWidget* makeTitleBar();
  GtkWidget* makeMenuButton();
  void addPages();
  void fillPage();
  void addShortcuts();
  void addShortcut(const char* keys, std::function<void()> perform);
  void update();
  void updateTitleBar();
  void showPage(const char* name);
  bool isOn(const char* name) const;
  void edit(const TemplateKey& key);
  bool isHeld(const std::function<void()>& discard);
  void leave();
  void close();
  void editText();
  void importFolder();
  void offer(TemplateImport found, const std::string& otherwise);
  void undo();
  void redo();
  void chooseFile();
  void acceptFiles();
  void showAbout();

  SettingsModel& model;
  const std::function<void()> closed;
  GtkWindow* const window;
  GtkWidget* const stack;
  GtkWidget* const titles;
  GtkWidget* const title;
  GtkWidget* const backButton;
  GtkWidget* const newButton;
  GtkWidget* const searchButton;
  GtkWidget* const menuButton;
  GtkWidget* const overlay;
  Toast toast;
  TemplateList list;
  /// Those of the other pages that have been shown.
  std::optional<TemplateEditor> editor;
  std::optional<MenuSettings> menuSettings;
  std::optional<TextPage> text;
  std::optional<ImportPage> imports;
  bool isEditingText = false;
};

}  // namespace sprig::settings

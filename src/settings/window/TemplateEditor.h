// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/FileURL.h"
#include "settings/SettingsModel.h"
#include "settings/TemplateDraft.h"
#include "settings/window/ContentEditor.h"
#include "settings/window/DelayedCall.h"
#include "settings/window/SymbolButton.h"

namespace sprig::settings {

/// The page on which one template is edited. What is edited is written when the user pauses, and by `finish`.
///
/// Threads:   main thread.
/// Ownership: the model outlives this; its widgets belong to the window, which this must not outlive.
class TemplateEditor {
 public:
  TemplateEditor(SettingsModel& settingsModel, std::function<void(const std::string&)> failureHandler);
  TemplateEditor(const TemplateEditor&) = delete;
  TemplateEditor& operator=(const TemplateEditor&) = delete;

  GtkWidget* widget() const { return page; }

  /// Begins with a template of the model.
  void open(const TemplateKey& key);
  /// Whether the user has to decide first between what is edited here and what others have written.
  bool isAsking() const { return draft && draft->state() == TemplateDraft::State::changedElsewhere; }
  /// Writes what is left to write. Which template it was; nothing if there was none.
  std::optional<TemplateKey> finish();
  /// Takes in what the model has now.
  void update();

 private:
  GtkWidget* makeBar();
  GtkWidget* makeNameRow();
  GtkWidget* makeFields();
  GtkWidget* makePreviewRow();
  void watch(GtkWidget* editable);
  void show();
  void showBar();
  void showPreview();
  void takeIn();
  void followName(const TemplateItem& before);
  void write();
  void chooseFolder();
  void insertInPattern(const std::string& token);
  std::string categoryIn(const std::string& text) const;

  SettingsModel& model;
  const std::function<void(const std::string&)> failed;
  std::optional<TemplateDraft> draft;
  GtkWidget* const page;
  GtkWidget* const barText;
  GtkWidget* const barButtons;
  GtkWidget* const bar;
  SymbolButton symbol;
  GtkWidget* const name;
  GtkWidget* const pattern;
  GtkWidget* const extension;
  GtkWidget* const category;
  GtkWidget* const asks;
  GtkWidget* const favorite;
  GtkWidget* const previewName;
  GtkWidget* const folderButton;
  GtkWidget* const previewNote;
  ContentEditor content;
  GtkWidget* const form;
  std::vector<std::string> categories;
  platform::FileURL folder;
  DelayedCall writing;
  bool isUpdating = false;
};

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "settings/SettingsModel.h"

namespace sprig::settings {

/// The page on which the user looks at templates that a folder or a file offers, and chooses which of them
/// are added.
///
/// Threads:   main thread.
/// Ownership: the model outlives this; its widgets belong to the window, which this must not outlive.
class ImportPage {
 public:
  /// `whenAdded` is called with how many were added.
  ImportPage(SettingsModel& settingsModel, std::function<void(std::size_t)> whenAdded);
  ImportPage(const ImportPage&) = delete;
  ImportPage& operator=(const ImportPage&) = delete;

  GtkWidget* widget() const { return page; }

  /// Begins with an offer of one entry at least. What is here already, and would not change, isn't chosen.
  void show(TemplateImport newOffer);
  /// Shows what the model has now.
  void update();

 private:
  void makeAllButton();
  void makeSkipped();
  GtkWidget* makeRow(std::size_t place);
  GtkWidget* makeTexts(const TemplateImport::Entry& entry) const;
  void showSkipped();
  void showChosen();
  void showContent(std::size_t place);
  bool step(std::ptrdiff_t by);
  void add();
  std::vector<std::size_t> chosen() const;

  SettingsModel& model;
  const std::function<void(std::size_t)> added;
  GtkWidget* const page;
  GtkWidget* const title;
  GtkWidget* const skipped;
  GtkWidget* const skippedText;
  GtkWidget* const all;
  GtkWidget* const list;
  GtkWidget* const contentTitle;
  GtkWidget* const content;
  GtkWidget* const addButton;
  std::optional<TemplateImport> offer;
  std::vector<GtkWidget*> checks;
  bool isUpdating = false;
};

}  // namespace sprig::settings

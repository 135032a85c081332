// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "settings/SettingsModel.h"
#include "settings/window/TemplateRows.h"

namespace sprig::settings {

/// The page with the list of templates.
///
/// Threads:   main thread.
/// Ownership: the model outlives this; its widgets belong to the window, which this must not outlive.
class TemplateList {
 public:
  struct Handlers {
    std::function<void(const TemplateKey&)> edit;
    /// A template was removed, which the user may regret.
    std::function<void(const std::string& name)> removed;
  };

  TemplateList(SettingsModel& settingsModel, Handlers pageHandlers);
  TemplateList(const TemplateList&) = delete;
  TemplateList& operator=(const TemplateList&) = delete;

  GtkWidget* widget() const { return page; }

  /// Shows what the model has now.
  void update();
  void focus(const TemplateKey& key);
  void focusFirst();
  /// The row that the last update has brought; the first one if nothing else has the keyboard.
  void focusNews();
  void addNew();
  void beginSearch();

 private:
  void makePage();
  GtkWidget* makeSearch();
  void makeEmptyPage();
  void makeActions();
  void addAction(const char* name, std::function<void(const TemplateKey&)> perform);
  void makeShortcuts();
  void addRowShortcut(const char* keys, std::function<void(const TemplateKey&)> perform);
  TemplateRowView::Handlers rowHandlers();
  GMenuModel* menuOf(const TemplateKey& key) const;
  void updateNote();
  void showFound();
  void noteNews();
  void move(const TemplateKey& key, std::ptrdiff_t by);
  void moveTo(const TemplateKey& key, std::size_t position);
  void drop(const TemplateKey& dragged, const TemplateKey& target, bool isBelow);
  void remove(const TemplateKey& key);
  void duplicate(const TemplateKey& key);

  SettingsModel& model;
  const Handlers handlers;
  GtkWidget* const page;
  GtkWidget* const searchBar;
  GtkWidget* const search;
  GtkWidget* const note;
  TemplateRows rows;
  GtkWidget* const empty;
  GtkWidget* const emptyTitle;
  GtkWidget* const emptyText;
  GtkWidget* const emptyButton;
  /// All templates of the last update, and one that it has brought.
  std::set<std::pair<std::string, std::size_t>> known;
  std::optional<TemplateKey> news;
};

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "settings/TemplateRow.h"

namespace sprig::settings {

/// A row of the list: a template's symbol, name and extension, a switch, and its menu. It may show one
/// template after another, or none.
///
/// Threads:   main thread. Ownership: its widgets belong to the list, which this must not outlive.
class TemplateRowView {
 public:
  /// What the user does with a row.
  struct Handlers {
    std::function<void(const TemplateKey&, bool)> setEnabled;
    /// Another one was dropped on this one; `isBelow`: on its lower half.
    std::function<void(const TemplateKey& dragged, const TemplateKey& target, bool isBelow)> drop;
    /// The menu of a row.
    std::function<GMenuModel*(const TemplateKey&)> menu;
  };

  /// Where in the list a row is.
  struct Place {
    /// Among the rows that are shown, and whether it is their last.
    std::size_t place = 0;
    bool isLast = false;
    /// Among all templates, and how many there are.
    std::size_t position = 0;
    std::size_t count = 0;
    bool isWritable = true;
  };

  /// `rowHandlers` outlives this.
  explicit TemplateRowView(const Handlers& rowHandlers);
  TemplateRowView(const TemplateRowView&) = delete;
  TemplateRowView& operator=(const TemplateRowView&) = delete;

  GtkListBoxRow* widget() const { return row; }
  /// Of the template that it shows, or showed last.
  const TemplateKey& key() const { return templateKey; }
  /// Absent while it shows none.
  std::optional<std::size_t> place() const { return shownAt; }
  void openMenu();

  /// Takes another row of the list, as it is dragged; `isBelow`: on the lower half. False if it is no row.
  bool drop(const GValue& dragged, bool isBelow);

  void show(const TemplateRow& data, const Place& where);
  /// Shows none. The list takes it off the screen.
  void hide() { shownAt.reset(); }

 private:
  GtkWidget* makeContent();
  void makeDraggable();

  const Handlers& handlers;
  GtkListBoxRow* const row;
  GtkWidget* const icon;
  GtkWidget* const name;
  GtkWidget* const extension;
  GtkWidget* const star;
  GtkWidget* const enabled;
  GtkWidget* const menuButton;
  TemplateKey templateKey;
  std::optional<std::size_t> shownAt;
  bool isUpdating = false;
};

}  // namespace sprig::settings

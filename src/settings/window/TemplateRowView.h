// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

#include "settings/TemplateRow.h"

namespace sprig::settings {

/// A template in the list: its symbol, name and extension, a switch, and its menu.
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

  /// `rowHandlers` outlives this.
  TemplateRowView(const TemplateKey& key, const Handlers& rowHandlers);
  TemplateRowView(const TemplateRowView&) = delete;
  TemplateRowView& operator=(const TemplateRowView&) = delete;

  GtkListBoxRow* widget() const { return row; }
  const TemplateKey& key() const { return templateKey; }
  const TemplateRow& shown() const { return data; }
  std::size_t position() const { return place; }
  void openMenu();

  void update(const TemplateRow& newData, std::size_t position, std::size_t count, bool isWritable);

 private:
  GtkWidget* makeContent();
  void makeDraggable();
  void acceptDrops();
  bool drop(const GValue* dragged, double y);
  void markDrop(bool isBelow);
  void unmarkDrop();
  bool isInLowerHalf(double y) const;

  const TemplateKey templateKey;
  const Handlers& handlers;
  GtkListBoxRow* const row;
  GtkWidget* const icon;
  GtkWidget* const name;
  GtkWidget* const extension;
  GtkWidget* const star;
  GtkWidget* const enabled;
  GtkWidget* const menuButton;
  TemplateRow data;
  std::size_t place = 0;
  bool isUpdating = false;
};

}  // namespace sprig::settings

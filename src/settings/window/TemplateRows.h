// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "settings/RowGeometry.h"
#include "settings/SettingsModel.h"
#include "settings/window/DelayedCall.h"
#include "settings/window/RowDrops.h"
#include "settings/window/TemplateRowView.h"

namespace sprig::settings {

/// The rows of the list of templates. There are widgets for those only that can be seen and a few beside
/// them, so that a thousand templates cost no more than a dozen; they show other templates as the user
/// scrolls. A place is a row's number among those that are shown now.
///
/// Threads:   main thread.
/// Ownership: the model outlives this; its widgets belong to the page, which this must not outlive.
class TemplateRows {
 public:
  TemplateRows(const SettingsModel& settingsModel, TemplateRowView::Handlers rowHandlers,
               std::function<void(const TemplateKey&)> whenActivated);
  TemplateRows(const TemplateRows&) = delete;
  TemplateRows& operator=(const TemplateRows&) = delete;

  GtkWidget* widget() const { return column; }
  /// The widget that gets the keys of rows.
  GtkWidget* keyboardWidget() const { return list; }
  /// To be called once, with what scrolls `widget`.
  void scrollIn(GtkScrolledWindow* scroller);

  /// Shows those of the model's rows that are at these positions, in ascending order; with or without the
  /// line above the first one under "More Templates".
  enum class Divider { shown, hidden };
  void show(std::vector<std::size_t> positions, Divider divider);

  /// The model's positions that are shown.
  const std::vector<std::size_t>& positions() const { return found; }
  std::optional<std::size_t> placeOf(const TemplateKey& key) const;
  /// The row that has the keyboard, or in which something has it.
  std::optional<TemplateKey> focused() const;
  /// Gives a row the keyboard, and scrolls there. Requires: a place of now.
  void focus(std::size_t place);
  void scrollToTop();
  /// Of a row that has a widget.
  void openMenu(const TemplateKey& key) const;

 private:
  void addKeys();
  void addMenuClick();
  void setOrder();
  void step(std::ptrdiff_t rows);
  void measure();
  void fill(std::optional<std::size_t> wanted, bool isNewData);
  RowGeometry::Range placesInSight(std::size_t spare) const;
  std::vector<std::size_t> placesToHave(std::optional<std::size_t> wanted) const;
  void bind(const std::vector<std::size_t>& places, bool isNewData);
  void bindView(TemplateRowView& view, std::size_t place);
  void setAside(TemplateRowView& view) const;
  void place(const std::vector<std::size_t>& places);
  void updateDivider(GtkListBoxRow* row) const;
  void followFocus();
  void followScrolling();
  void reveal();
  double topInScroller() const;
  const TemplateRow& rowAt(std::size_t place) const { return model.rows()[found[place]]; }
  TemplateRowView* viewOf(const TemplateKey& key) const;
  TemplateRowView* focusedView() const;

  const SettingsModel& model;
  const TemplateRowView::Handlers handlers;
  const std::function<void(const TemplateKey&)> activated;
  GtkWidget* const column;
  GtkWidget* const above;
  GtkWidget* const list;
  GtkWidget* const below;
  GtkAdjustment* scrolling = nullptr;
  /// All that were made; those without a place are hidden until they are needed.
  std::vector<std::unique_ptr<TemplateRowView>> views;
  std::vector<std::size_t> found;
  RowGeometry geometry;
  RowGeometry::Range inSight;
  /// What is to be scrolled to once the list has its new size.
  std::optional<TemplateKey> revealed;
  DelayedCall follow;
  RowDrops drops;
};

}  // namespace sprig::settings

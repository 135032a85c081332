// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>

namespace sprig::settings {

/// Takes what is dragged within a list of rows: marks where it would go, and scrolls the list while it is
/// held at the upper or lower edge. Rows may show something else once the list has scrolled, so it is the
/// place on the screen that counts, not the row that the pointer came to.
///
/// Threads:   main thread.
/// Ownership: the widgets belong to the page, which this must not outlive.
class RowDrops {
 public:
  /// `isBelow`: on the lower half of the row. False if the value is none that goes there.
  using Drop = std::function<bool(const GValue& dragged, GtkListBoxRow* target, bool isBelow)>;

  RowDrops(GtkListBox* rows, Drop whenDropped);
  RowDrops(const RowDrops&) = delete;
  RowDrops& operator=(const RowDrops&) = delete;

  /// To be called once, with what scrolls the list; takes what is dropped beside the list, too.
  void scrollIn(GtkScrolledWindow* window);

 private:
  /// A row, if one is there.
  struct Place {
    GtkListBoxRow* row = nullptr;
    bool isBelow = false;
  };
  /// The places are heights in the scrolled window.
  Place placeAt(double y) const;
  bool follow(double y);
  void leave();
  bool drop(const GValue& dragged, double y);
  bool mark();
  void unmark();
  gboolean scroll(gint64 now);
  double speed() const;

  GtkListBox* const list;
  const Drop dropped;
  GtkScrolledWindow* scroller = nullptr;
  GtkListBoxRow* marked = nullptr;
  /// Of the drag that is here now.
  std::optional<double> pointer;
  /// The frame that was scrolled to last, in microseconds; 0 while nothing is to be scrolled.
  gint64 lastFrame = 0;
};

}  // namespace sprig::settings

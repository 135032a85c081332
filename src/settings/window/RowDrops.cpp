// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/RowDrops.h"

#include <algorithm>
#include <utility>

namespace sprig::settings {

namespace {

constexpr double edge = 48;       // pixels
constexpr double maxSpeed = 900;  // pixels a second

constexpr const char* above = "drop-above";
constexpr const char* below = "drop-below";

}  // namespace

RowDrops::RowDrops(GtkListBox* rows, Drop whenDropped) : list(rows), dropped(std::move(whenDropped)) {}

void RowDrops::scrollIn(GtkScrolledWindow* window) {
  scroller = window;
  auto* target = gtk_drop_target_new(G_TYPE_VARIANT, GDK_ACTION_MOVE);
  g_signal_connect(target, "motion",
                   G_CALLBACK(+[](GtkDropTarget*, double, double y, RowDrops* self) -> GdkDragAction {
                     return self->follow(y) ? GDK_ACTION_MOVE : GdkDragAction{};
                   }),
                   this);
  g_signal_connect(target, "leave", G_CALLBACK(+[](GtkDropTarget*, RowDrops* self) { self->leave(); }), this);
  g_signal_connect(
      target, "drop",
      G_CALLBACK(+[](GtkDropTarget*, const GValue* value, double, double y, RowDrops* self) -> gboolean {
        return self->drop(*value, y) ? TRUE : FALSE;
      }),
      this);
  gtk_widget_add_controller(GTK_WIDGET(scroller), GTK_EVENT_CONTROLLER(target));
}

/// The first row for what is above it, and the last one for what is below.
RowDrops::Place RowDrops::placeAt(double y) const {
  const graphene_point_t inWindow{0, static_cast<float>(y)};
  graphene_point_t inList;
  graphene_point_t inRow;
  auto* widget = GTK_WIDGET(list);
  if (gtk_widget_compute_point(GTK_WIDGET(scroller), widget, &inWindow, &inList) == FALSE) return {};
  inList.y = std::clamp(inList.y, 0.0F, static_cast<float>(std::max(gtk_widget_get_height(widget) - 1, 0)));
  auto* row = gtk_list_box_get_row_at_y(list, static_cast<int>(inList.y));
  if (row == nullptr || gtk_widget_compute_point(widget, GTK_WIDGET(row), &inList, &inRow) == FALSE)
    return {};
  return {row, static_cast<double>(inRow.y) > gtk_widget_get_height(GTK_WIDGET(row)) / 2.0};
}

bool RowDrops::mark() {
  unmark();
  const auto place = placeAt(*pointer);
  if (place.row == nullptr) return false;
  marked = place.row;
  gtk_widget_add_css_class(GTK_WIDGET(marked), place.isBelow ? below : above);
  return true;
}

void RowDrops::unmark() {
  if (marked == nullptr) return;
  for (const auto* style : {above, below}) gtk_widget_remove_css_class(GTK_WIDGET(marked), style);
  marked = nullptr;
}

bool RowDrops::follow(double y) {
  pointer = y;
  if (lastFrame == 0 && speed() != 0) {
    lastFrame = gdk_frame_clock_get_frame_time(gtk_widget_get_frame_clock(GTK_WIDGET(scroller)));
    gtk_widget_add_tick_callback(
        GTK_WIDGET(scroller),
        [](GtkWidget*, GdkFrameClock* clock, void* self) -> gboolean {
          return static_cast<RowDrops*>(self)->scroll(gdk_frame_clock_get_frame_time(clock));
        },
        this, nullptr);
  }
  return mark();
}

void RowDrops::leave() {
  pointer.reset();
  unmark();
}

bool RowDrops::drop(const GValue& dragged, double y) {
  leave();
  const auto place = placeAt(y);
  return place.row != nullptr && dropped(dragged, place.row, place.isBelow);
}

/// Whether it goes on; also where the list has come to its end, as the rows may change there yet.
gboolean RowDrops::scroll(gint64 now) {
  const auto seconds = static_cast<double>(now - std::exchange(lastFrame, now)) / G_USEC_PER_SEC;
  if (speed() == 0) {
    lastFrame = 0;
    return G_SOURCE_REMOVE;
  }
  auto* adjustment = gtk_scrolled_window_get_vadjustment(scroller);
  gtk_adjustment_set_value(adjustment, gtk_adjustment_get_value(adjustment) + speed() * seconds);
  // The pointer has not moved, but what is under it.
  mark();
  return G_SOURCE_CONTINUE;
}

/// Pixels a second, faster the nearer it is to the edge; negative upwards.
double RowDrops::speed() const {
  if (!pointer) return 0;
  const double toBottom = gtk_widget_get_height(GTK_WIDGET(scroller)) - *pointer;
  const double depth = std::max(edge - toBottom, 0.0) - std::max(edge - *pointer, 0.0);
  return maxSpeed * std::clamp(depth / edge, -1.0, 1.0);
}

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk3/ClickOrigin.h"

#include <gdk/gdkx.h>

#include <memory>
#include <optional>

namespace sprig::filemanagers {

namespace {

/// Null once the object has gone.
class WeakWindow {
 public:
  explicit WeakWindow(GtkWidget* window) { g_weak_ref_init(&reference, window); }
  ~WeakWindow() { g_weak_ref_clear(&reference); }
  WeakWindow(const WeakWindow&) = delete;
  WeakWindow& operator=(const WeakWindow&) = delete;

  wire::ObjectPointer<GtkWidget> get() {
    return wire::ObjectPointer<GtkWidget>(static_cast<GtkWidget*>(g_weak_ref_get(&reference)));
  }

 private:
  GWeakRef reference{};
};

ClickOrigin originIn(GtkWidget* window) {
  auto* surface = gtk_widget_get_window(gtk_widget_get_toplevel(window));
  if (!surface) return {};
  if (!GDK_IS_X11_WINDOW(surface)) {
    const wire::ObjectPointer<GAppLaunchContext> context(
        G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(gtk_widget_get_display(window))));
    return clickOriginOnWayland(context.get());
  }
  const auto moment = gtk_get_current_event_time();
  return clickOriginOnX11(gdk_x11_window_get_xid(surface),
                          moment == GDK_CURRENT_TIME ? std::nullopt : std::optional(moment));
}

}  // namespace

std::function<ClickOrigin()> clickOriginIn(GtkWidget* window) {
  if (!window) return {};
  return [weak = std::make_shared<WeakWindow>(window)] {
    const auto alive = weak->get();
    return alive ? originIn(alive.get()) : ClickOrigin{};
  };
}

}  // namespace sprig::filemanagers

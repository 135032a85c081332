// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk4/ClickOrigin.h"

#include <gtk/gtk.h>

#ifdef GDK_WINDOWING_X11
#include <gdk/x11/gdkx.h>
#endif

#if defined(GDK_WINDOWING_WAYLAND) && GTK_CHECK_VERSION(4, 12, 0)
#define SPRIG_HAS_WINDOW_HANDLES
#include <gdk/wayland/gdkwayland.h>
#endif

#include "wire/Pointers.h"

namespace sprig::filemanagers {

namespace {

GdkSurface* activeSurface() {
  auto* application = g_application_get_default();
  if (!application || !GTK_IS_APPLICATION(application)) return nullptr;
  auto* window = gtk_application_get_active_window(GTK_APPLICATION(application));
  return window ? gtk_native_get_surface(GTK_NATIVE(window)) : nullptr;
}

#ifdef SPRIG_HAS_WINDOW_HANDLES
/// What a window's handle is kept under, for as long as the window; empty while it is on its way.
constexpr const char* handleKey = "sprig-window-handle";

void keepHandle(GdkToplevel* window, const char* handle, void* /*data*/) {
  g_object_set_data_full(G_OBJECT(window), handleKey, g_strdup(handle), g_free);
}
#endif

std::string handleOf([[maybe_unused]] GdkSurface* surface) {
#ifdef SPRIG_HAS_WINDOW_HANDLES
  const auto* handle = static_cast<const char*>(g_object_get_data(G_OBJECT(surface), handleKey));
  if (handle && *handle != '\0') return std::string("wayland:") + handle;
#endif
  return "";
}

}  // namespace

void prepareClicksInActiveWindow() {
#ifdef SPRIG_HAS_WINDOW_HANDLES
  auto* surface = activeSurface();
  if (!surface || !GDK_IS_WAYLAND_TOPLEVEL(surface) || g_object_get_data(G_OBJECT(surface), handleKey))
    return;
  keepHandle(GDK_TOPLEVEL(surface), "", nullptr);
  gdk_wayland_toplevel_export_handle(GDK_TOPLEVEL(surface), keepHandle, nullptr, nullptr);
#endif
}

ClickOrigin clickOriginInActiveWindow() {
  auto* surface = activeSurface();
  if (!surface) return {};
  auto* display = gdk_surface_get_display(surface);
#ifdef GDK_WINDOWING_X11
  // GTK marks its X11 functions as deprecated in later versions without offering others.
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  if (GDK_IS_X11_SURFACE(surface)) {
    const auto moment = gdk_x11_display_get_user_time(display);
    return clickOriginOnX11(gdk_x11_surface_get_xid(surface),
                            moment == 0 ? std::nullopt : std::optional(moment));
  }
  G_GNUC_END_IGNORE_DEPRECATIONS
#endif
  const wire::ObjectPointer<GAppLaunchContext> context(
      G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(display)));
  auto origin = clickOriginOnWayland(context.get());
  origin.parentWindow = handleOf(surface);
  return origin;
}

}  // namespace sprig::filemanagers

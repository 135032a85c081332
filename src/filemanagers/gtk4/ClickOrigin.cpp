// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk4/ClickOrigin.h"

#include <gtk/gtk.h>

#ifdef GDK_WINDOWING_X11
#include <gdk/x11/gdkx.h>
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

}  // namespace

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
  return clickOriginOnWayland(context.get());
}

}  // namespace sprig::filemanagers

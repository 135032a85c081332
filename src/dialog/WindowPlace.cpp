#include "dialog/WindowPlace.h"

#include <charconv>
#include <string_view>

#ifdef GDK_WINDOWING_X11
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <gdk/x11/gdkx.h>
#endif
#ifdef GDK_WINDOWING_WAYLAND
#include <gdk/wayland/gdkwayland.h>
#endif

namespace sprig::dialog {

namespace {

/// What follows `prefix`; empty when `text` doesn't begin with it.
std::string_view behind(std::string_view prefix, std::string_view text) {
  return text.substr(0, prefix.size()) == prefix ? text.substr(prefix.size()) : std::string_view();
}

#ifdef GDK_WINDOWING_X11
// GTK marks its X11 functions as deprecated in later versions without offering others.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

/// GTK says of every window that it is an ordinary one, which window managers put anywhere.
void beDialogOnX11(GdkSurface* surface) {
  auto* display = gdk_surface_get_display(surface);
  const auto atom = [&](const char* name) { return gdk_x11_get_xatom_by_name_for_display(display, name); };
  const Atom type = atom("_NET_WM_WINDOW_TYPE_DIALOG");
  constexpr int bits = 32;
  XChangeProperty(gdk_x11_display_get_xdisplay(display), gdk_x11_surface_get_xid(surface),
                  atom("_NET_WM_WINDOW_TYPE"), XA_ATOM, bits, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(&type), 1);
}

void belongToX11(GdkSurface* surface, std::string_view handle) {
  Window parent = 0;
  const auto* end = handle.data() + handle.size();
  const auto parsed = std::from_chars(handle.data(), end, parent, 16);
  if (parsed.ec != std::errc() || parsed.ptr != end || parent == 0) return;
  auto* display = gdk_x11_display_get_xdisplay(gdk_surface_get_display(surface));
  // Only a hint on our own window, so a parent that has gone does no harm.
  XSetTransientForHint(display, gdk_x11_surface_get_xid(surface), parent);
}

void stayAboveOnX11(GdkSurface* surface) {
  auto* display = gdk_surface_get_display(surface);
  auto* connection = gdk_x11_display_get_xdisplay(display);
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = gdk_x11_surface_get_xid(surface);
  event.xclient.message_type = gdk_x11_get_xatom_by_name_for_display(display, "_NET_WM_STATE");
  event.xclient.format = 32;
  event.xclient.data.l[0] = 1;  // add
  event.xclient.data.l[1] =
      static_cast<long>(gdk_x11_get_xatom_by_name_for_display(display, "_NET_WM_STATE_ABOVE"));
  event.xclient.data.l[3] = 1;  // an ordinary program
  XSendEvent(connection, DefaultRootWindow(connection), False,
             SubstructureRedirectMask | SubstructureNotifyMask, &event);
}

G_GNUC_END_IGNORE_DEPRECATIONS
#endif

}  // namespace

void takeFocusWith(GtkWindow* window, const std::string& activationToken) {
  if (activationToken.empty()) return;
  gtk_window_set_startup_id(window, activationToken.c_str());
#ifdef GDK_WINDOWING_WAYLAND
  // There, what is presented takes the display's token, and the window's own counts for nothing.
  auto* display = gtk_widget_get_display(GTK_WIDGET(window));
  if (GDK_IS_WAYLAND_DISPLAY(display)) {
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    gdk_wayland_display_set_startup_notification_id(display, activationToken.c_str());
    G_GNUC_END_IGNORE_DEPRECATIONS
  }
#endif
}

void belongTo(GtkWindow* window, const std::string& parentWindow) {
  auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
#ifdef GDK_WINDOWING_X11
  if (const auto handle = behind("x11:", parentWindow); !handle.empty() && GDK_IS_X11_SURFACE(surface)) {
    beDialogOnX11(surface);
    belongToX11(surface, handle);
  }
#endif
#ifdef GDK_WINDOWING_WAYLAND
  if (const auto handle = behind("wayland:", parentWindow);
      !handle.empty() && GDK_IS_WAYLAND_TOPLEVEL(surface)) {
    gdk_wayland_toplevel_set_transient_for_exported(GDK_TOPLEVEL(surface), handle.data());
  }
#endif
}

void stayAbove(GtkWindow* window) {
#ifdef GDK_WINDOWING_X11
  auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
  if (GDK_IS_X11_SURFACE(surface)) stayAboveOnX11(surface);
#endif
}

}  // namespace sprig::dialog

// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/WindowPlace.h"

#include <charconv>
#include <string_view>

#include "wire/Pointers.h"

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
std::string_view removePrefix(std::string_view prefix, std::string_view text) {
  return text.substr(0, prefix.size()) == prefix ? text.substr(prefix.size()) : std::string_view();
}

#ifdef GDK_WINDOWING_X11
// GTK marks its X11 functions as deprecated in later versions without offering others.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

/// GTK says of every window that it is an ordinary one, which window managers put anywhere.
void setTypeOnX11(GdkSurface* surface) {
  auto* display = gdk_surface_get_display(surface);
  const auto atom = [&](const char* name) { return gdk_x11_get_xatom_by_name_for_display(display, name); };
  const Atom type = atom("_NET_WM_WINDOW_TYPE_DIALOG");
  constexpr int bits = 32;
  XChangeProperty(gdk_x11_display_get_xdisplay(display), gdk_x11_surface_get_xid(surface),
                  atom("_NET_WM_WINDOW_TYPE"), XA_ATOM, bits, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(&type), 1);
}

bool setTransientForOnX11(GdkSurface* surface, std::string_view handle) {
  Window parent = 0;
  const auto* end = handle.data() + handle.size();
  const auto parsed = std::from_chars(handle.data(), end, parent, 16);
  if (parsed.ec != std::errc() || parsed.ptr != end || parent == 0) return false;
  auto* display = gdk_x11_display_get_xdisplay(gdk_surface_get_display(surface));
  // Only a hint on our own window, so a parent that has gone does no harm.
  XSetTransientForHint(display, gdk_x11_surface_get_xid(surface), parent);
  return true;
}

/// What the window manager says is active; `None` when it doesn't say.
Window activeWindow(GdkDisplay* display) {
  auto* connection = gdk_x11_display_get_xdisplay(display);
  Atom type = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  XGetWindowProperty(connection, DefaultRootWindow(connection),
                     gdk_x11_get_xatom_by_name_for_display(display, "_NET_ACTIVE_WINDOW"), 0, 1, False,
                     XA_WINDOW, &type, &format, &count, &rest, &data);
  if (data == nullptr) return None;
  const Window window = type == XA_WINDOW && count == 1 ? *reinterpret_cast<const Window*>(data) : None;
  XFree(data);
  return window;
}

struct Point {
  int x = 0;
  int y = 0;
};

/// The middle of the active window, else where the pointer is; in pixels of the X server. The window may go
/// any time.
Point placeInUse(GdkDisplay* display) {
  auto* connection = gdk_x11_display_get_xdisplay(display);
  const Window root = DefaultRootWindow(connection);
  Point place;
  Window ignored = None;
  int ignoredNumber = 0;
  unsigned ignoredMask = 0;
  XWindowAttributes area = {};
  gdk_x11_display_error_trap_push(display);
  const Window active = activeWindow(display);
  const bool isFound = active != None && XGetWindowAttributes(connection, active, &area) != 0 &&
                       XTranslateCoordinates(connection, active, root, area.width / 2, area.height / 2,
                                             &place.x, &place.y, &ignored) != False;
  if (!isFound) {
    XQueryPointer(connection, root, &ignored, &ignored, &place.x, &place.y, &ignoredNumber, &ignoredNumber,
                  &ignoredMask);
  }
  gdk_x11_display_error_trap_pop_ignored(display);
  return place;
}

/// In pixels of the X server.
GdkRectangle monitorAt(GdkDisplay* display, Point point) {
  auto* monitors = gdk_display_get_monitors(display);
  GdkRectangle area = {};
  for (guint index = 0; index < g_list_model_get_n_items(monitors); ++index) {
    const wire::ObjectPointer<GdkMonitor> monitor(GDK_MONITOR(g_list_model_get_item(monitors, index)));
    const int scale = gdk_monitor_get_scale_factor(monitor.get());
    GdkRectangle next = {};
    gdk_monitor_get_geometry(monitor.get(), &next);
    next = {next.x * scale, next.y * scale, next.width * scale, next.height * scale};
    if (index == 0 || gdk_rectangle_contains_point(&next, point.x, point.y) != FALSE) area = next;
  }
  return area;
}

/// Once, as soon as the window has its size. By then it may be the active one, so the place is known before.
void centerOnX11(GdkSurface* surface, int width, int height, const GdkRectangle* monitor) {
  const int scale = gdk_surface_get_scale_factor(surface);
  XMoveWindow(gdk_x11_display_get_xdisplay(gdk_surface_get_display(surface)),
              gdk_x11_surface_get_xid(surface), monitor->x + (monitor->width - width * scale) / 2,
              monitor->y + (monitor->height - height * scale) / 2);
  g_signal_handlers_disconnect_matched(surface, G_SIGNAL_MATCH_FUNC, 0, 0, nullptr,
                                       reinterpret_cast<void*>(centerOnX11), nullptr);
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

void comeToFront(GtkWindow* window) {
  guint32 moment = GDK_CURRENT_TIME;
#ifdef GDK_WINDOWING_X11
  // GTK would give the moment when this window was used last, to which window managers prefer newer ones.
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
  if (GDK_IS_X11_SURFACE(surface)) moment = gdk_x11_get_server_time(surface);
  G_GNUC_END_IGNORE_DEPRECATIONS
#endif
  gtk_window_present_with_time(window, moment);
}

std::string activationTokenFrom(GtkWindow* window) {
  auto* display = gtk_widget_get_display(GTK_WIDGET(window));
#ifdef GDK_WINDOWING_X11
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  if (GDK_IS_X11_DISPLAY(display))
    return "sprig_TIME" + std::to_string(gdk_x11_display_get_user_time(display));
  G_GNUC_END_IGNORE_DEPRECATIONS
#endif
  const wire::ObjectPointer<GAppLaunchContext> context(
      G_APP_LAUNCH_CONTEXT(gdk_display_get_app_launch_context(display)));
  // GLib before 2.82 asks for a token in the name of some program only.
  const wire::ObjectPointer<GAppInfo> program(g_app_info_create_from_commandline(
      "sprig-dialog", "Sprig", G_APP_INFO_CREATE_SUPPORTS_STARTUP_NOTIFICATION, nullptr));
  if (!program) return "";
  const wire::TextPointer token(
      g_app_launch_context_get_startup_notify_id(context.get(), program.get(), nullptr));
  return token ? token.get() : "";
}

void setWindowHints(GtkWindow* window, Listing listing) {
#ifdef GDK_WINDOWING_X11
  auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
  if (!GDK_IS_X11_SURFACE(surface)) return;
  setTypeOnX11(surface);
  const gboolean isLeftOut = listing == Listing::leftOut ? TRUE : FALSE;
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  gdk_x11_surface_set_skip_taskbar_hint(surface, isLeftOut);
  gdk_x11_surface_set_skip_pager_hint(surface, isLeftOut);
  G_GNUC_END_IGNORE_DEPRECATIONS
#endif
}

bool setTransientFor(GtkWindow* window, const std::string& parentWindow) {
  auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
#ifdef GDK_WINDOWING_X11
  if (const auto handle = removePrefix("x11:", parentWindow);
      !handle.empty() && GDK_IS_X11_SURFACE(surface)) {
    return setTransientForOnX11(surface, handle);
  }
#endif
#ifdef GDK_WINDOWING_WAYLAND
  if (const auto handle = removePrefix("wayland:", parentWindow);
      !handle.empty() && GDK_IS_WAYLAND_TOPLEVEL(surface)) {
    return gdk_wayland_toplevel_set_transient_for_exported(GDK_TOPLEVEL(surface), handle.data()) != FALSE;
  }
#endif
  return false;
}

void centerOnScreen(GtkWindow* window) {
#ifdef GDK_WINDOWING_X11
  auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
  if (!GDK_IS_X11_SURFACE(surface)) return;
  auto* display = gdk_surface_get_display(surface);
  auto monitor = std::make_unique<GdkRectangle>(monitorAt(display, placeInUse(display)));
  g_signal_connect_data(
      surface, "layout", G_CALLBACK(centerOnX11), monitor.release(),
      +[](void* data, GClosure*) { delete static_cast<GdkRectangle*>(data); }, G_CONNECT_AFTER);
#endif
}

void stayAbove(GtkWindow* window) {
#ifdef GDK_WINDOWING_X11
  auto* surface = gtk_native_get_surface(GTK_NATIVE(window));
  if (GDK_IS_X11_SURFACE(surface)) stayAboveOnX11(surface);
#endif
}

}  // namespace sprig::dialog

#include "filemanagers/gtk3/ClickOrigin.h"

#include <gdk/gdkx.h>

#include <array>
#include <charconv>
#include <memory>
#include <string>

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

std::string hexadecimal(unsigned long number) {
  std::array<char, 2 * sizeof number> digits{};
  auto* end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
  return {digits.data(), end};
}

/// The window system's window, if it is one of X11.
GdkWindow* x11WindowOf(GtkWidget* widget) {
  auto* surface = gtk_widget_get_window(gtk_widget_get_toplevel(widget));
  return surface && GDK_IS_X11_WINDOW(surface) ? surface : nullptr;
}

ClickOrigin originIn(GtkWidget* window) {
  ClickOrigin origin;
  auto* surface = x11WindowOf(window);
  if (!surface) return origin;
  origin.parentWindow = "x11:" + hexadecimal(gdk_x11_window_get_xid(surface));
  // Window managers read the moment of the click from the end of a start-up id: with it, the dialog is newer
  // than all that the user did before, so it gets the focus.
  const auto moment = gtk_get_current_event_time();
  if (moment != GDK_CURRENT_TIME) origin.activationToken = "sprig_TIME" + std::to_string(moment);
  return origin;
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

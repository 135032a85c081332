#include "filemanagers/gtk3/themedIcon.h"

#include <gtk/gtk.h>

#include "wire/Interface.h"

namespace sprig::filemanagers {

const char* themedIcon(const std::string& icon) {
  if (icon.empty()) return nullptr;
  // Without a screen nothing is drawn.
  auto* screen = gdk_screen_get_default();
  if (!screen || gtk_icon_theme_has_icon(gtk_icon_theme_get_for_screen(screen), icon.c_str())) {
    return icon.c_str();
  }
  return wire::documentIcon;
}

}  // namespace sprig::filemanagers

// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk3/themedIcon.h"

#include "wire/Interface.h"
#include "wire/Pointers.h"

namespace sprig::filemanagers {

const char* themedIcon(const std::string& icon) {
  if (icon.empty()) return nullptr;
  // Without a screen nothing is drawn.
  auto* screen = gdk_screen_get_default();
  return screen ? themedIcon(*gtk_icon_theme_get_for_screen(screen), icon) : icon.c_str();
}

const char* themedIcon(GtkIconTheme& theme, const std::string& icon) {
  constexpr int sizeInMenus = 16;
  const wire::ObjectPointer<GtkIconInfo> found(
      gtk_icon_theme_lookup_icon(&theme, icon.c_str(), sizeInMenus, GtkIconLookupFlags(0)));
  return found ? icon.c_str() : wire::documentIcon;
}

}  // namespace sprig::filemanagers

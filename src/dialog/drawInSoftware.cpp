// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/drawInSoftware.h"

#include <gtk/gtk.h>

namespace sprig::dialog {

void drawInSoftware() {
  constexpr guint firstWithDisable = 16;
  g_setenv("GSK_RENDERER", "cairo", FALSE);
  // The variable that GTK runs by, not that of the headers we were built with.
  if (gtk_get_minor_version() < firstWithDisable) {
    g_setenv("GDK_DEBUG", "gl-disable", FALSE);
  } else {
    g_setenv("GDK_DISABLE", "gl,vulkan", FALSE);
  }
}

}  // namespace sprig::dialog

// SPDX-License-Identifier: GPL-3.0-or-later

// A window that does nothing, of the size of the prompt and with a field for text. What any GTK 4 window
// costs.
//
// Usage: sprig-bench-bare-window TITLE WIDTH HEIGHT

#include <gtk/gtk.h>

#include <cstdlib>

int main(int argumentCount, char** arguments) {
  if (argumentCount != 4) return 2;
  gtk_init();
  auto* window = GTK_WINDOW(gtk_window_new());
  auto* field = gtk_entry_new();
  gtk_widget_set_valign(field, GTK_ALIGN_CENTER);
  gtk_window_set_title(window, arguments[1]);
  gtk_window_set_default_size(window, std::atoi(arguments[2]), std::atoi(arguments[3]));
  gtk_window_set_child(window, field);
  bool isOpen = true;
  g_signal_connect(window, "close-request",
                   G_CALLBACK(+[](GtkWindow*, bool* open) -> gboolean { return *open = false; }), &isOpen);
  gtk_window_present(window);
  while (isOpen) g_main_context_iteration(nullptr, TRUE);
}

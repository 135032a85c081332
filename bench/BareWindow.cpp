// SPDX-License-Identifier: GPL-3.0-or-later

// A window that does nothing, with a field for text, or with a list like that of the templates. What any GTK
// 4 window costs.
//
// Usage: sprig-bench-bare-window TITLE WIDTH HEIGHT [ROWS]

#include <gtk/gtk.h>

#include <cstdlib>
#include <string>

namespace {

GtkWidget* makeField() {
  auto* field = gtk_entry_new();
  gtk_widget_set_valign(field, GTK_ALIGN_CENTER);
  return field;
}

/// The same widgets as a template's row has.
void fillRow(GtkSignalListItemFactory*, GtkListItem* item, void*) {
  auto* row = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 12);
  auto* name = gtk_label_new(nullptr);
  gtk_widget_set_hexpand(name, TRUE);
  auto* menu = gtk_menu_button_new();
  gtk_menu_button_set_icon_name(GTK_MENU_BUTTON(menu), "view-more-symbolic");
  for (auto* part : {gtk_image_new_from_icon_name("list-drag-handle-symbolic"),
                     gtk_image_new_from_icon_name("text-x-generic-symbolic"), name, gtk_label_new(".txt"),
                     gtk_switch_new(), menu})
    gtk_box_append(GTK_BOX(row), part);
  gtk_list_item_set_child(item, row);
}

void showRow(GtkSignalListItemFactory*, GtkListItem* item, void*) {
  auto* name = gtk_widget_get_next_sibling(
      gtk_widget_get_next_sibling(gtk_widget_get_first_child(gtk_list_item_get_child(item))));
  gtk_label_set_text(GTK_LABEL(name),
                     gtk_string_object_get_string(GTK_STRING_OBJECT(gtk_list_item_get_item(item))));
}

GtkWidget* makeList(int rows) {
  auto* names = gtk_string_list_new(nullptr);
  for (int row = 0; row < rows; ++row)
    gtk_string_list_append(names, ("Template " + std::to_string(row)).c_str());
  auto* factory = gtk_signal_list_item_factory_new();
  g_signal_connect(factory, "setup", G_CALLBACK(fillRow), nullptr);
  g_signal_connect(factory, "bind", G_CALLBACK(showRow), nullptr);
  auto* list = gtk_list_view_new(GTK_SELECTION_MODEL(gtk_no_selection_new(G_LIST_MODEL(names))), factory);
  auto* scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), list);
  return scroller;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  if (argumentCount < 4) return 2;
  gtk_init();
  auto* window = GTK_WINDOW(gtk_window_new());
  gtk_window_set_title(window, arguments[1]);
  gtk_window_set_default_size(window, std::atoi(arguments[2]), std::atoi(arguments[3]));
  gtk_window_set_child(window, argumentCount == 4 ? makeField() : makeList(std::atoi(arguments[4])));
  bool isOpen = true;
  g_signal_connect(window, "close-request",
                   G_CALLBACK(+[](GtkWindow*, bool* open) -> gboolean { return *open = false; }), &isOpen);
  gtk_window_present(window);
  while (isOpen) g_main_context_iteration(nullptr, TRUE);
}

// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/FileChooser.h"

#include <utility>

#include "settings/window/Widgets.h"
#include "wire/Pointers.h"

namespace sprig::settings {

void chooseInDialog(GtkWidget* parent, const char* title, GtkFileChooserAction action,
                    const std::string& name, std::function<void(GFile*)> chosen) {
  auto* window = GTK_WINDOW(gtk_widget_get_root(parent));
  auto* dialog = gtk_file_chooser_native_new(title, window, action, nullptr, nullptr);
  gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(dialog), TRUE);
  if (!name.empty() && action == GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER) {
    const wire::ObjectPointer<GFile> folder(g_file_new_for_path(name.c_str()));
    gtk_file_chooser_set_current_folder(GTK_FILE_CHOOSER(dialog), folder.get(), nullptr);
  } else if (!name.empty()) {
    gtk_file_chooser_set_current_name(GTK_FILE_CHOOSER(dialog), name.c_str());
  }
  using Chosen = std::function<void(GFile*)>;
  g_signal_connect_data(
      dialog, "response", G_CALLBACK(+[](GtkNativeDialog* answered, int response, void* function) {
        const wire::ObjectPointer<GFile> file(gtk_file_chooser_get_file(GTK_FILE_CHOOSER(answered)));
        if (response == GTK_RESPONSE_ACCEPT && file) (*static_cast<Chosen*>(function))(file.get());
        g_object_unref(answered);
      }),
      new Chosen(std::move(chosen)), [](void* function, GClosure*) { delete static_cast<Chosen*>(function); },
      GConnectFlags{});
  gtk_native_dialog_show(GTK_NATIVE_DIALOG(dialog));
}

}  // namespace sprig::settings

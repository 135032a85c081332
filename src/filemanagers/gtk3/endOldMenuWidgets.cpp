// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk3/endOldMenuWidgets.h"

#include <gtk/gtk.h>

#include <memory>

#include "wire/Pointers.h"

// GTK 3 wouldn't have new programs use what these file managers use.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

namespace sprig::filemanagers {

namespace {

/// What a window's menus are put together by, of the window that has taken items out or in since the last
/// look.
class ChangedMenus {
 public:
  ChangedMenus() { g_weak_ref_init(&manager, nullptr); }
  ~ChangedMenus() {
    g_signal_remove_emission_hook(signal, hook);
    g_weak_ref_clear(&manager);
  }
  ChangedMenus(const ChangedMenus&) = delete;
  ChangedMenus& operator=(const ChangedMenus&) = delete;

  wire::ObjectPointer<GtkUIManager> take() {
    wire::ObjectPointer<GtkUIManager> taken(static_cast<GtkUIManager*>(g_weak_ref_get(&manager)));
    g_weak_ref_set(&manager, nullptr);
    return taken;
  }

 private:
  static guint signalOfChanges() {
    // Loads the type, without which there is no signal.
    g_type_class_unref(g_type_class_ref(GTK_TYPE_UI_MANAGER));
    return g_signal_lookup("actions-changed", GTK_TYPE_UI_MANAGER);
  }
  static gboolean changed(GSignalInvocationHint* /*hint*/, guint /*count*/, const GValue* values,
                          void* self) {
    g_weak_ref_set(&static_cast<ChangedMenus*>(self)->manager, g_value_get_object(values));
    return TRUE;
  }

  GWeakRef manager{};
  guint signal = signalOfChanges();
  gulong hook = g_signal_add_emission_hook(signal, 0, changed, this, nullptr);
};

/// The ones of a provider, which belong to it.
ChangedMenus& changedMenusOf(void* provider) {
  constexpr const char* key = "sprig-changed-menus";
  auto* object = static_cast<GObject*>(provider);
  if (!g_object_get_data(object, key)) {
    g_object_set_data_full(object, key, new ChangedMenus,
                           [](void* menus) { delete static_cast<ChangedMenus*>(menus); });
  }
  return *static_cast<ChangedMenus*>(g_object_get_data(object, key));
}

/// Whether the file manager may ask because an item was picked: to see whether there still is one of that
/// name.
bool isPick() {
  const std::unique_ptr<GdkEvent, decltype(&gdk_event_free)> event(gtk_get_current_event(), gdk_event_free);
  if (!event) return false;
  guint key = GDK_KEY_Menu;
  gdk_event_get_keyval(event.get(), &key);
  const auto type = gdk_event_get_event_type(event.get());
  const bool opensMenu = key == GDK_KEY_Menu || key == GDK_KEY_F10;
  return type == GDK_BUTTON_RELEASE || type == GDK_KEY_RELEASE || !opensMenu;
}

}  // namespace

void endOldMenuWidgets(void* provider) {
  const auto manager = changedMenusOf(provider).take();
  if (manager && !isPick()) gtk_ui_manager_ensure_update(manager.get());
}

}  // namespace sprig::filemanagers

G_GNUC_END_IGNORE_DEPRECATIONS

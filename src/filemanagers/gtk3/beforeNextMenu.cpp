// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk3/beforeNextMenu.h"

#include <gtk/gtk.h>

#include <memory>

#include "filemanagers/client/guardCallback.h"

namespace sprig::filemanagers {

namespace {

constexpr const char* pendingKey = "sprig-call-before-menu";

struct PendingCall {
  GObject* object;
  void (*call)(void* object);
};

/// One that asks for a menu, or that is in a bar of menus.
bool isPressForMenu(GdkEvent& event) {
  const auto* widget = gtk_get_event_widget(&event);
  return gdk_event_triggers_context_menu(&event) != FALSE || GTK_IS_MENU_ITEM(widget) ||
         GTK_IS_MENU_SHELL(widget);
}

bool opensMenu(GdkEvent& event) {
  guint key = 0;
  GdkModifierType state{};
  switch (gdk_event_get_event_type(&event)) {
    case GDK_BUTTON_PRESS:
      return isPressForMenu(event);
    case GDK_TOUCH_BEGIN:
      return true;
    case GDK_KEY_PRESS:
      gdk_event_get_keyval(&event, &key);
      gdk_event_get_state(&event, &state);
      return key == GDK_KEY_Menu || key == GDK_KEY_F10 || key == GDK_KEY_Alt_L || key == GDK_KEY_Alt_R ||
             (state & GDK_MOD1_MASK) != 0;
    default:
      return false;
  }
}

gboolean happens(GSignalInvocationHint* /*hint*/, guint /*count*/, const GValue* values, void* data) {
  auto& event = *static_cast<GdkEvent*>(g_value_get_boxed(&values[1]));
  if (!opensMenu(event) || GTK_IS_MENU_SHELL(gtk_grab_get_current())) return TRUE;
  const auto& pending = *static_cast<const PendingCall*>(data);
  g_object_set_data(pending.object, pendingKey, nullptr);
  guardCallback([&] { pending.call(pending.object); });
  return FALSE;
}

void forget(void* data) {
  const std::unique_ptr<PendingCall> pending(static_cast<PendingCall*>(data));
  g_object_unref(pending->object);
}

}  // namespace

void beforeNextMenu(void* object, void (*call)(void* object)) {
  auto* kept = static_cast<GObject*>(object);
  if (g_object_get_data(kept, pendingKey)) return;
  auto pending = std::make_unique<PendingCall>(PendingCall{kept, call});
  g_object_set_data(kept, pendingKey, pending.get());
  g_object_ref(kept);
  g_signal_add_emission_hook(g_signal_lookup("event", GTK_TYPE_WIDGET), 0, happens, pending.release(),
                             forget);
}

}  // namespace sprig::filemanagers

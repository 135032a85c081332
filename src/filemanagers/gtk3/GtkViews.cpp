// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk3/GtkViews.h"

#include <gdk/gdkx.h>

#include <algorithm>
#include <charconv>
#include <memory>
#include <optional>
#include <string_view>

#include "wire/Pointers.h"

namespace sprig::filemanagers {

namespace {

std::optional<unsigned long> x11Handle(std::string_view parentWindow) {
  constexpr std::string_view prefix = "x11:";
  unsigned long number = 0;
  if (!parentWindow.starts_with(prefix)) return std::nullopt;
  const auto* end = parentWindow.data() + parentWindow.size();
  const auto [rest, error] = std::from_chars(parentWindow.data() + prefix.size(), end, number, 16);
  return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

bool isX11Window(GtkWidget* window, unsigned long handle) {
  auto* surface = gtk_widget_get_window(window);
  return surface && GDK_IS_X11_WINDOW(surface) && gdk_x11_window_get_xid(surface) == handle;
}

void collect(GtkWidget* widget, void* list) {
  if (gtk_widget_get_mapped(widget) == FALSE) return;
  static_cast<std::vector<GtkWidget*>*>(list)->push_back(widget);
  if (GTK_IS_CONTAINER(widget)) gtk_container_forall(GTK_CONTAINER(widget), collect, list);
}

}  // namespace

bool isNamed(void* object, const char* typeName) {
  const auto type = g_type_from_name(typeName);
  return type != G_TYPE_INVALID && G_TYPE_CHECK_INSTANCE_TYPE(object, type);
}

bool hasProperty(void* object, const char* name, GType valueType) {
  const auto* property = g_object_class_find_property(G_OBJECT_GET_CLASS(object), name);
  return property && g_type_is_a(property->value_type, valueType) != FALSE;
}

std::vector<GtkWidget*> windowsOf(const std::string& parentWindow) {
  const std::unique_ptr<GList, wire::Releaser<g_list_free>> all(gtk_window_list_toplevels());
  const auto handle = x11Handle(parentWindow);
  std::vector<GtkWidget*> windows;
  for (auto* item = all.get(); item; item = item->next) {
    auto* window = static_cast<GtkWidget*>(item->data);
    if (gtk_widget_get_mapped(window) == FALSE || (handle && !isX11Window(window, *handle))) continue;
    windows.push_back(window);
  }
  std::stable_partition(windows.begin(), windows.end(),
                        [](GtkWidget* window) { return gtk_window_is_active(GTK_WINDOW(window)) != FALSE; });
  return windows;
}

std::vector<GtkWidget*> widgetsOn(GtkWidget* window) {
  std::vector<GtkWidget*> widgets;
  collect(window, &widgets);
  if (auto* focus = gtk_window_get_focus(GTK_WINDOW(window))) {
    std::stable_partition(widgets.begin(), widgets.end(), [&](GtkWidget* widget) {
      return widget == focus || gtk_widget_is_ancestor(focus, widget) != FALSE;
    });
  }
  return widgets;
}

}  // namespace sprig::filemanagers

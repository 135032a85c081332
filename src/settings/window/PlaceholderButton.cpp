// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/PlaceholderButton.h"

#include <utility>

#include "settings/window/Widgets.h"
#include "translation/translated.h"
#include "wire/Pointers.h"

namespace sprig::settings {

GtkWidget* makePlaceholderButton(const std::vector<Placeholder>& placeholders,
                                 std::function<void(const std::string&)> insert) {
  auto* button = gtk_menu_button_new();
  gtk_menu_button_set_label(GTK_MENU_BUTTON(button), translated("Insert"));
  gtk_widget_set_tooltip_text(button, translated("Insert a value that each new file gets"));
  const wire::ObjectPointer<GMenu> menu(g_menu_new());
  for (const auto& [token, meaning] : placeholders) {
    const wire::ObjectPointer<GMenuItem> item(g_menu_item_new(translated(meaning), nullptr));
    g_menu_item_set_action_and_target(item.get(), "placeholder.insert", "s", std::string(token).c_str());
    g_menu_append_item(menu.get(), item.get());
  }
  gtk_menu_button_set_menu_model(GTK_MENU_BUTTON(button), G_MENU_MODEL(menu.get()));

  using Insert = std::function<void(const std::string&)>;
  const wire::ObjectPointer<GSimpleAction> action(g_simple_action_new("insert", G_VARIANT_TYPE_STRING));
  g_signal_connect_data(
      action.get(), "activate", G_CALLBACK(+[](GSimpleAction*, GVariant* token, void* function) {
        (*static_cast<Insert*>(function))(g_variant_get_string(token, nullptr));
      }),
      new Insert(std::move(insert)), [](void* function, GClosure*) { delete static_cast<Insert*>(function); },
      GConnectFlags{});
  const wire::ObjectPointer<GSimpleActionGroup> group(g_simple_action_group_new());
  g_action_map_add_action(G_ACTION_MAP(group.get()), G_ACTION(action.get()));
  gtk_widget_insert_action_group(button, "placeholder", G_ACTION_GROUP(group.get()));
  return button;
}

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/TemplateRowView.h"

#include "settings/window/Widgets.h"
#include "translation/translated.h"
#include "wire/Pointers.h"

namespace sprig::settings {

namespace {

// Characters.
constexpr int shortestName = 20;
constexpr int extensionWidth = 7;

/// Drags within this program carry it: "(st)", the template's id and which of those that share it.
constexpr const char* dragType = "(st)";

GVariant* variantOf(const TemplateKey& key) {
  return g_variant_new(dragType, key.id.c_str(), static_cast<guint64>(key.occurrence));
}

/// For screen readers, after the name.
std::string descriptionOf(const TemplateRow& row, std::size_t position, std::size_t count) {
  auto text = translated("%1% of %2%", {std::to_string(position + 1), std::to_string(count)});
  const auto add = [&text](const std::string& fact) {
    // TRANSLATORS: between the facts on a template, for screen readers
    text += translated(", ") + fact;
  };
  if (!row.extensionName.empty()) add(row.extensionName);
  if (row.isFavorite) add(translated("favourite"));
  if (row.placement == Placement::underMoreTemplates) add(translated("under “More Templates”"));
  if (row.placement == Placement::nowhere) add(translated("not in the menu"));
  return text;
}

}  // namespace

TemplateRowView::TemplateRowView(const Handlers& rowHandlers)
    : handlers(rowHandlers),
      row(GTK_LIST_BOX_ROW(gtk_list_box_row_new())),
      icon(makeDecoration(nullptr)),
      name(makeLabel("")),
      extension(makeLabel("")),
      star(makeDecoration("starred-symbolic")),
      enabled(gtk_switch_new()),
      menuButton(gtk_menu_button_new()) {
  gtk_widget_add_css_class(GTK_WIDGET(row), "sprig-row");
  gtk_list_box_row_set_child(row, makeContent());
  connect(enabled, "notify::active", [this] {
    if (!isUpdating) handlers.setEnabled(templateKey, gtk_switch_get_active(GTK_SWITCH(enabled)) != FALSE);
  });
  // Only the menu that is looked at is made.
  gtk_menu_button_set_create_popup_func(
      GTK_MENU_BUTTON(menuButton),
      [](GtkMenuButton* button, void* view) {
        const auto& self = *static_cast<TemplateRowView*>(view);
        const wire::ObjectPointer<GMenuModel> menu(self.handlers.menu(self.templateKey));
        gtk_menu_button_set_popover(button, gtk_popover_menu_new_from_model(menu.get()));
      },
      this, nullptr);
  makeDraggable();
}

GtkWidget* TemplateRowView::makeContent() {
  auto* handle = makeDecoration("list-drag-handle-symbolic");
  gtk_widget_add_css_class(handle, "sprig-handle");
  gtk_image_set_pixel_size(GTK_IMAGE(icon), 16);
  gtk_label_set_ellipsize(GTK_LABEL(name), PANGO_ELLIPSIZE_END);
  // No long one makes the list wider.
  gtk_label_set_max_width_chars(GTK_LABEL(name), shortestName);
  gtk_widget_set_hexpand(name, TRUE);
  gtk_label_set_ellipsize(GTK_LABEL(extension), PANGO_ELLIPSIZE_END);
  gtk_label_set_width_chars(GTK_LABEL(extension), extensionWidth);
  gtk_label_set_max_width_chars(GTK_LABEL(extension), extensionWidth);
  for (const auto* style : {"dim-label", "sprig-extension"}) gtk_widget_add_css_class(extension, style);
  gtk_widget_add_css_class(star, "dim-label");
  gtk_widget_set_tooltip_text(star, translated("Favourite"));
  gtk_widget_set_valign(enabled, GTK_ALIGN_CENTER);
  gtk_menu_button_set_icon_name(GTK_MENU_BUTTON(menuButton), "view-more-symbolic");
  gtk_menu_button_set_has_frame(GTK_MENU_BUTTON(menuButton), FALSE);
  gtk_widget_set_valign(menuButton, GTK_ALIGN_CENTER);
  auto* box = makeBox(GTK_ORIENTATION_HORIZONTAL, gap);
  for (auto* part : {handle, icon, name, star, extension, enabled, menuButton})
    gtk_box_append(GTK_BOX(box), part);
  return box;
}

void TemplateRowView::openMenu() { gtk_menu_button_popup(GTK_MENU_BUTTON(menuButton)); }

void TemplateRowView::show(const TemplateRow& data, const Place& where) {
  templateKey = data.key;
  shownAt = where.place;
  isUpdating = true;
  gtk_image_set_from_icon_name(GTK_IMAGE(icon), drawableIcon(data.icon).c_str());
  gtk_label_set_text(GTK_LABEL(name), data.name.c_str());
  gtk_label_set_text(GTK_LABEL(extension), data.extensionName.c_str());
  setVisible(star, data.isFavorite);
  gtk_switch_set_active(GTK_SWITCH(enabled), data.isEnabled ? TRUE : FALSE);
  gtk_widget_set_sensitive(enabled, where.isWritable ? TRUE : FALSE);
  for (auto* part : {icon, name}) setStyle(part, "sprig-off", !data.isEnabled);
  setStyle(GTK_WIDGET(row), "last", where.isLast);
  setAccessibleName(GTK_WIDGET(row), data.name);
  setAccessibleDescription(GTK_WIDGET(row), descriptionOf(data, where.position, where.count));
  setAccessibleName(enabled, translated("Show “%1%” in the menu", {data.name}));
  setAccessibleName(menuButton, translated("Menu of “%1%”", {data.name}));
  isUpdating = false;
}

void TemplateRowView::makeDraggable() {
  auto* source = gtk_drag_source_new();
  gtk_drag_source_set_actions(source, GDK_ACTION_MOVE);
  g_signal_connect(
      source, "prepare",
      G_CALLBACK(+[](GtkDragSource* drag, double x, double y, TemplateRowView* self) -> GdkContentProvider* {
        const wire::ObjectPointer<GdkPaintable> look(gtk_widget_paintable_new(GTK_WIDGET(self->row)));
        // Of now: the row may show another template once the list has scrolled.
        const wire::ObjectPointer<GdkPaintable> picture(gdk_paintable_get_current_image(look.get()));
        gtk_drag_source_set_icon(drag, picture.get(), static_cast<int>(x), static_cast<int>(y));
        return gdk_content_provider_new_typed(G_TYPE_VARIANT, variantOf(self->templateKey));
      }),
      this);
  gtk_widget_add_controller(GTK_WIDGET(row), GTK_EVENT_CONTROLLER(source));
}

bool TemplateRowView::drop(const GValue& dragged, bool isBelow) {
  auto* variant = g_value_get_variant(&dragged);
  if (variant == nullptr || g_variant_is_of_type(variant, G_VARIANT_TYPE(dragType)) == FALSE) return false;
  const char* id = nullptr;
  guint64 occurrence = 0;
  g_variant_get(variant, "(&st)", &id, &occurrence);
  handlers.drop({id, occurrence}, templateKey, isBelow);
  return true;
}

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/Widgets.h"

#include <memory>
#include <utility>

#include "ports/linux/SymbolIcons.h"
#include "wire/Pointers.h"

namespace sprig::settings {

namespace {

using Handler = std::function<bool()>;

void callHandler(GClosure* closure, GValue* result, guint, const GValue*, gpointer, gpointer) noexcept {
  const bool isDone = (*static_cast<Handler*>(closure->data))();
  if (result != nullptr && G_VALUE_HOLDS_BOOLEAN(result)) g_value_set_boolean(result, isDone ? TRUE : FALSE);
}

void dropHandler(gpointer handler, GClosure*) noexcept { delete static_cast<Handler*>(handler); }

void connectHandler(gpointer object, const char* signal, Handler handler) {
  auto owned = std::make_unique<Handler>(std::move(handler));
  auto* closure = g_closure_new_simple(sizeof(GClosure), owned.get());
  g_closure_add_finalize_notifier(closure, owned.release(), dropHandler);
  g_closure_set_marshal(closure, callHandler);
  g_signal_connect_closure(object, signal, closure, FALSE);
}

gboolean performShortcut(GtkWidget*, GVariant*, void* handler) noexcept {
  return (*static_cast<Handler*>(handler))() ? TRUE : FALSE;
}

/// Characters of an average line that wraps, so that no page becomes wider for it.
constexpr int lineLength = 60;

constexpr const char* style = R"(
.sprig-card { background: @theme_base_color; border: 1px solid @borders; border-radius: 12px; }
.sprig-card > row { padding: 5px 12px; min-height: 36px; }
.sprig-card > row:not(:last-child), .sprig-card > .sprig-divider { border-bottom: 1px solid alpha(@borders, 0.6); }
.sprig-card > row.sprig-row { border-bottom: 1px solid alpha(@borders, 0.6); }
.sprig-card > row.sprig-row.last { border-bottom-color: transparent; }
.sprig-card > row:focus-visible { outline-offset: -3px; border-radius: 11px; }
.sprig-card > row.drop-above { box-shadow: inset 0 2px @theme_selected_bg_color; }
.sprig-card > row.drop-below { box-shadow: inset 0 -2px @theme_selected_bg_color; }
.sprig-divider { padding: 6px 14px; background: alpha(@borders, 0.25); }
.sprig-off { opacity: 0.5; }
.sprig-handle { opacity: 0.35; }
.sprig-row:hover .sprig-handle, .sprig-row:focus-within .sprig-handle { opacity: 0.8; }
.sprig-extension { font-family: monospace; font-size: 0.92em; }
.sprig-toast { background: #2d2d2d; color: white; border-radius: 12px; padding: 6px 8px 6px 16px;
  box-shadow: 0 2px 8px alpha(black, 0.35); }
.sprig-toast button { color: white; background: alpha(white, 0.14); border: none; box-shadow: none;
  text-shadow: none; -gtk-icon-shadow: none; }
.sprig-toast button:hover { background: alpha(white, 0.25); }
.sprig-toast button.flat { background: none; }
.sprig-content { font-family: monospace; padding: 8px 10px; }
.sprig-editor-frame { border: 1px solid @borders; border-radius: 8px; }
.sprig-bar { background: alpha(@warning_color, 0.18); border-bottom: 1px solid @borders; padding: 8px 16px; }
.sprig-note { background: alpha(@borders, 0.35); border-radius: 10px; padding: 10px 14px; }
.sprig-symbol { padding: 8px; border-radius: 12px; }
)";

}  // namespace

void connect(gpointer object, const char* signal, std::function<void()> handler) {
  connectHandler(object, signal, [handler = std::move(handler)] {
    handler();
    return false;
  });
}

void connectDeciding(gpointer object, const char* signal, std::function<bool()> handler) {
  connectHandler(object, signal, std::move(handler));
}

void addShortcut(GtkWidget* widget, const char* keys, std::function<bool()> perform, ShortcutScope scope) {
  auto* controller = gtk_shortcut_controller_new();
  gtk_shortcut_controller_set_scope(GTK_SHORTCUT_CONTROLLER(controller), scope == ShortcutScope::window
                                                                             ? GTK_SHORTCUT_SCOPE_MANAGED
                                                                             : GTK_SHORTCUT_SCOPE_LOCAL);
  auto* action = gtk_callback_action_new(performShortcut, new Handler(std::move(perform)),
                                         [](void* handler) { delete static_cast<Handler*>(handler); });
  gtk_shortcut_controller_add_shortcut(GTK_SHORTCUT_CONTROLLER(controller),
                                       gtk_shortcut_new(gtk_shortcut_trigger_parse_string(keys), action));
  gtk_widget_add_controller(widget, controller);
}

GtkWidget* makeBox(GtkOrientation orientation, int spacing) { return gtk_box_new(orientation, spacing); }

void setMargins(GtkWidget* widget, int vertical, int horizontal) {
  gtk_widget_set_margin_top(widget, vertical);
  gtk_widget_set_margin_bottom(widget, vertical);
  gtk_widget_set_margin_start(widget, horizontal);
  gtk_widget_set_margin_end(widget, horizontal);
}

GtkWidget* makeLabel(const std::string& text) {
  auto* label = gtk_label_new(text.c_str());
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  return label;
}

GtkWidget* makeText(const std::string& text) {
  auto* label = makeLabel(text);
  gtk_label_set_wrap(GTK_LABEL(label), TRUE);
  gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_max_width_chars(GTK_LABEL(label), lineLength);
  return label;
}

GtkWidget* makeIconButton(const char* iconName, const std::string& name) {
  auto* button = gtk_button_new_from_icon_name(iconName);
  gtk_widget_set_tooltip_text(button, name.c_str());
  setAccessibleName(button, name);
  return button;
}

GtkWidget* makeDecoration(const char* iconName) {
  return GTK_WIDGET(g_object_new(GTK_TYPE_IMAGE, "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION,
                                 "icon-name", iconName, nullptr));
}

void setAccessibleName(GtkWidget* widget, const std::string& name) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(), -1);
}

void setAccessibleDescription(GtkWidget* widget, const std::string& description) {
  gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
                                 description.c_str(), -1);
}

void hideOtherPages(GtkStack* stack) {
  const auto hide = [stack] {
    auto* shown = gtk_stack_get_visible_child(stack);
    for (auto* page = gtk_widget_get_first_child(GTK_WIDGET(stack)); page != nullptr;
         page = gtk_widget_get_next_sibling(page)) {
      gtk_accessible_update_state(GTK_ACCESSIBLE(page), GTK_ACCESSIBLE_STATE_HIDDEN,
                                  page == shown ? FALSE : TRUE, -1);
    }
  };
  connect(stack, "notify::visible-child", hide);
  hide();
}

void labelWidget(GtkWidget* label, GtkWidget* widget) {
  gtk_label_set_mnemonic_widget(GTK_LABEL(label), widget);
  gtk_accessible_update_relation(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_RELATION_LABELLED_BY, label, nullptr,
                                 -1);
}

GtkWidget* makeScrolledColumn(GtkWidget* column) {
  gtk_widget_set_size_request(column, columnWidth, -1);
  gtk_widget_set_halign(column, GTK_ALIGN_CENTER);
  setMargins(column, pageMargin, pageMargin);
  auto* scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), column);
  gtk_widget_set_vexpand(scroller, TRUE);
  return scroller;
}

GtkWidget* makeCard() {
  auto* card = gtk_list_box_new();
  gtk_list_box_set_selection_mode(GTK_LIST_BOX(card), GTK_SELECTION_NONE);
  gtk_widget_add_css_class(card, "sprig-card");
  gtk_widget_set_overflow(card, GTK_OVERFLOW_HIDDEN);
  return card;
}

GtkWidget* addCardRow(GtkWidget* card, const std::string& name, const std::string& description,
                      GtkWidget* control) {
  auto* title = makeLabel(name);
  auto* texts = makeBox(GTK_ORIENTATION_VERTICAL, 2);
  gtk_widget_set_hexpand(texts, TRUE);
  gtk_widget_set_valign(texts, GTK_ALIGN_CENTER);
  gtk_box_append(GTK_BOX(texts), title);
  if (!description.empty()) {
    auto* details = makeText(description);
    gtk_widget_add_css_class(details, "dim-label");
    gtk_widget_add_css_class(details, "caption");
    gtk_box_append(GTK_BOX(texts), details);
    setAccessibleDescription(control, description);
  }
  labelWidget(title, control);
  gtk_widget_set_valign(control, GTK_ALIGN_CENTER);
  auto* content = makeBox(GTK_ORIENTATION_HORIZONTAL, gap);
  gtk_box_append(GTK_BOX(content), texts);
  gtk_box_append(GTK_BOX(content), control);
  auto* row = gtk_list_box_row_new();
  gtk_list_box_row_set_child(GTK_LIST_BOX_ROW(row), content);
  gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), FALSE);
  gtk_widget_set_focusable(row, FALSE);
  gtk_list_box_append(GTK_LIST_BOX(card), row);
  return row;
}

GtkWidget* makeTextView(const std::string& name) {
  auto* view = gtk_text_view_new();
  gtk_text_view_set_wrap_mode(GTK_TEXT_VIEW(view), GTK_WRAP_WORD_CHAR);
  gtk_text_view_set_monospace(GTK_TEXT_VIEW(view), TRUE);
  gtk_text_view_set_top_margin(GTK_TEXT_VIEW(view), smallGap);
  gtk_text_view_set_bottom_margin(GTK_TEXT_VIEW(view), smallGap);
  gtk_text_view_set_left_margin(GTK_TEXT_VIEW(view), gap);
  gtk_text_view_set_right_margin(GTK_TEXT_VIEW(view), gap);
  gtk_text_view_set_accepts_tab(GTK_TEXT_VIEW(view), FALSE);
  setAccessibleName(view, name);
  return view;
}

GtkWidget* makeTextFrame(GtkWidget* view, int height) {
  auto* scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), view);
  gtk_scrolled_window_set_min_content_height(GTK_SCROLLED_WINDOW(scroller), height);
  gtk_widget_add_css_class(scroller, "sprig-editor-frame");
  gtk_widget_set_overflow(scroller, GTK_OVERFLOW_HIDDEN);
  gtk_widget_set_vexpand(scroller, TRUE);
  return scroller;
}

void setTextIn(GtkWidget* view, const std::string& text) {
  auto* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(view));
  // What is typed keeps its cursor.
  if (textIn(buffer) != text) gtk_text_buffer_set_text(buffer, text.c_str(), static_cast<int>(text.size()));
}

std::string drawableIcon(const std::string& symbol) {
  auto* theme = gtk_icon_theme_get_for_display(gdk_display_get_default());
  const auto name = ports::iconName(symbol);
  if (name && gtk_icon_theme_has_icon(theme, name->c_str()) != FALSE) return *name;
  return ports::iconName("doc.text").value_or("text-x-generic-symbolic");
}

bool isVisible(GtkWidget* widget) { return gtk_widget_get_visible(widget) != FALSE; }

void setVisible(GtkWidget* widget, bool isVisible) {
  gtk_widget_set_visible(widget, isVisible ? TRUE : FALSE);
}

void setStyle(GtkWidget* widget, const char* name, bool isOn) {
  if (isOn) {
    gtk_widget_add_css_class(widget, name);
  } else {
    gtk_widget_remove_css_class(widget, name);
  }
}

std::string textIn(GtkTextBuffer* buffer) {
  GtkTextIter begin;
  GtkTextIter end;
  gtk_text_buffer_get_bounds(buffer, &begin, &end);
  const wire::TextPointer text(gtk_text_buffer_get_text(buffer, &begin, &end, TRUE));
  return text.get();
}

void addStyle() {
  const wire::ObjectPointer<GtkCssProvider> provider(gtk_css_provider_new());
  gtk_css_provider_load_from_data(provider.get(), style, -1);
  gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider.get()),
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/Toast.h"

#include <utility>

#include "settings/window/Widgets.h"
#include "translation/translated.h"

namespace sprig::settings {

namespace {

constexpr std::chrono::seconds timeShown(8);

/// Screen readers read it out when it changes.
GtkWidget* makeAlert() {
  auto* label = GTK_WIDGET(g_object_new(GTK_TYPE_LABEL, "accessible-role", GTK_ACCESSIBLE_ROLE_ALERT, "wrap",
                                        TRUE, "max-width-chars", 60, "xalign", 0.0, nullptr));
  gtk_widget_set_hexpand(label, TRUE);
  return label;
}

}  // namespace

Toast::Toast(GtkOverlay* overlay)
    : revealer(gtk_revealer_new()), label(makeAlert()), button(gtk_button_new()), end([this] { hide(); }) {
  auto* box = makeBox(GTK_ORIENTATION_HORIZONTAL, gap);
  gtk_widget_add_css_class(box, "sprig-toast");
  setMargins(box, pageMargin, pageMargin);
  auto* close = makeIconButton("window-close-symbolic", translated("Close"));
  gtk_widget_add_css_class(close, "flat");
  gtk_widget_add_css_class(close, "circular");
  gtk_box_append(GTK_BOX(box), label);
  gtk_box_append(GTK_BOX(box), button);
  gtk_box_append(GTK_BOX(box), close);
  gtk_revealer_set_child(GTK_REVEALER(revealer), box);
  gtk_revealer_set_transition_type(GTK_REVEALER(revealer), GTK_REVEALER_TRANSITION_TYPE_SLIDE_UP);
  gtk_widget_set_halign(revealer, GTK_ALIGN_CENTER);
  gtk_widget_set_valign(revealer, GTK_ALIGN_END);
  gtk_widget_set_visible(revealer, FALSE);
  gtk_overlay_add_overlay(overlay, revealer);
  connect(close, "clicked", [this] { hide(); });
  connect(button, "clicked", [this] {
    const auto perform = action;
    hide();
    if (perform) perform();
  });
  connect(revealer, "notify::child-revealed", [this] {
    if (gtk_revealer_get_reveal_child(GTK_REVEALER(revealer)) == FALSE) setVisible(revealer, false);
  });
}

void Toast::show(const std::string& message) {
  action = nullptr;
  reveal(message);
}

void Toast::show(const std::string& message, const std::string& title, std::function<void()> perform) {
  action = std::move(perform);
  gtk_button_set_label(GTK_BUTTON(button), title.c_str());
  reveal(message);
}

void Toast::reveal(const std::string& message) {
  setVisible(button, static_cast<bool>(action));
  gtk_label_set_text(GTK_LABEL(label), message.c_str());
  setAccessibleName(label, message);
  setVisible(revealer, true);
  gtk_revealer_set_reveal_child(GTK_REVEALER(revealer), TRUE);
  end.start(timeShown);
}

void Toast::hide() {
  end.stop();
  action = nullptr;
  gtk_revealer_set_reveal_child(GTK_REVEALER(revealer), FALSE);
}

}  // namespace sprig::settings

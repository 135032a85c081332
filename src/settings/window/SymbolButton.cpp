// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/SymbolButton.h"

#include <algorithm>
#include <utility>

#include "ports/linux/SymbolIcons.h"
#include "settings/window/Widgets.h"
#include "translation/translated.h"

namespace sprig::settings {

namespace {

constexpr int pictureSize = 32;
constexpr int choiceSize = 24;
constexpr int choicesInLine = 6;

std::string nameOf(std::string symbol) {
  std::replace(symbol.begin(), symbol.end(), '.', ' ');
  return symbol;
}

}  // namespace

SymbolButton::SymbolButton(std::function<void()> whenChosen)
    : handler(std::move(whenChosen)), button(gtk_menu_button_new()), image(makeDecoration(nullptr)) {
  for (const auto symbol : ports::knownSymbols()) symbols.emplace_back(symbol);
  gtk_image_set_pixel_size(GTK_IMAGE(image), pictureSize);
  gtk_widget_add_css_class(image, "sprig-symbol");
  gtk_menu_button_set_child(GTK_MENU_BUTTON(button), image);
  auto* popover = gtk_popover_new();
  gtk_popover_set_child(GTK_POPOVER(popover), makeChoice());
  gtk_menu_button_set_popover(GTK_MENU_BUTTON(button), popover);
  gtk_widget_set_tooltip_text(button, translated("Choose a Symbol"));
  gtk_widget_set_valign(button, GTK_ALIGN_CENTER);
}

GtkWidget* SymbolButton::makeChoice() {
  auto* box = gtk_flow_box_new();
  gtk_flow_box_set_min_children_per_line(GTK_FLOW_BOX(box), choicesInLine);
  gtk_flow_box_set_max_children_per_line(GTK_FLOW_BOX(box), choicesInLine);
  gtk_flow_box_set_selection_mode(GTK_FLOW_BOX(box), GTK_SELECTION_NONE);
  gtk_flow_box_set_homogeneous(GTK_FLOW_BOX(box), TRUE);
  setAccessibleName(box, translated("Symbols"));
  for (const auto& symbol : symbols) {
    auto* picture = makeDecoration(drawableIcon(symbol).c_str());
    gtk_image_set_pixel_size(GTK_IMAGE(picture), choiceSize);
    setMargins(picture, smallGap, smallGap);
    auto* child = gtk_flow_box_child_new();
    gtk_flow_box_child_set_child(GTK_FLOW_BOX_CHILD(child), picture);
    gtk_widget_set_tooltip_text(child, nameOf(symbol).c_str());
    setAccessibleName(child, nameOf(symbol));
    gtk_flow_box_insert(GTK_FLOW_BOX(box), child, -1);
  }
  g_signal_connect(box, "child-activated",
                   G_CALLBACK(+[](GtkFlowBox*, GtkFlowBoxChild* child, SymbolButton* self) {
                     gtk_menu_button_popdown(GTK_MENU_BUTTON(self->button));
                     self->show(self->symbols[static_cast<std::size_t>(gtk_flow_box_child_get_index(child))]);
                     self->handler();
                   }),
                   this);
  return box;
}

void SymbolButton::show(const std::string& symbol) {
  chosen = symbol;
  gtk_image_set_from_icon_name(GTK_IMAGE(image), drawableIcon(chosen).c_str());
  setAccessibleName(button, translated("Symbol: %1%", {nameOf(chosen)}));
}

}  // namespace sprig::settings

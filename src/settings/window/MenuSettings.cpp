// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/MenuSettings.h"

#include <array>

#include "finder/visibleCount.h"
#include "settings/window/Widgets.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig::settings {

namespace {

constexpr double maxInMenu = 100;
constexpr guint asksAlways = 0;
constexpr guint asksIfRequired = 1;

/// What "defaultBehavior" says for each choice.
constexpr const char* promptBehavior = "prompt";
constexpr const char* createBehavior = "create";

GtkWidget* makeChoice() {
  const std::array<const char*, 3> choices = {translated("For every file"),
                                              translated("If the template asks for it"), nullptr};
  return gtk_drop_down_new_from_strings(choices.data());
}

bool isOn(GtkWidget* control) { return gtk_switch_get_active(GTK_SWITCH(control)) != FALSE; }

void turn(GtkWidget* control, bool isOn) { gtk_switch_set_active(GTK_SWITCH(control), isOn ? TRUE : FALSE); }

}  // namespace

MenuSettings::MenuSettings(SettingsModel& settingsModel)
    : model(settingsModel),
      column(makeBox(GTK_ORIENTATION_VERTICAL, gap)),
      page(makeScrolledColumn(column)),
      showsMenu(gtk_switch_new()),
      count(gtk_spin_button_new_with_range(0, maxInMenu, 1)),
      sections(gtk_switch_new()),
      asks(makeChoice()),
      notifies(gtk_switch_new()) {
  auto* menu = makeGroup(translated("Menu"), translated("Menu"));
  addCardRow(menu, translated("Show Sprig in file managers"), "", showsMenu);
  addCardRow(menu, translated("Templates in the menu itself"),
             translated("Further ones are under “More Templates”."), count);
  addCardRow(menu, translated("Sections by category"), translated("Groups what is under “More Templates”."),
             sections);
  auto* files = makeGroup(translated("New Files"), translated("New Files"));
  gtk_widget_set_margin_top(gtk_widget_get_prev_sibling(files), gap);
  addCardRow(files, translated("Ask for a name"), translated("Without asking, the template gives the name."),
             asks);
  addCardRow(
      files, translated("Notifications"),
      translated("Tell of each new file, with a button that undoes it, where the file manager itself can’t."),
      notifies);
  connect(showsMenu, "notify::active",
          [this] { change([this](AppSettingsItem& settings) { settings.showInFinder = isOn(showsMenu); }); });
  connect(count, "value-changed", [this] {
    change([this](AppSettingsItem& settings) {
      settings.maxVisibleTemplates = gtk_spin_button_get_value_as_int(GTK_SPIN_BUTTON(count));
    });
  });
  connect(sections, "notify::active", [this] {
    change([this](AppSettingsItem& settings) { settings.showCategories = isOn(sections); });
  });
  connect(asks, "notify::selected", [this] {
    const bool isAlways = gtk_drop_down_get_selected(GTK_DROP_DOWN(asks)) == asksAlways;
    change([&](AppSettingsItem& settings) {
      settings.defaultBehavior = isAlways ? promptBehavior : createBehavior;
    });
  });
  connect(notifies, "notify::active", [this] {
    change([this](AppSettingsItem& settings) { settings.notificationsEnabled = isOn(notifies); });
  });
}

GtkWidget* MenuSettings::makeGroup(const char* title, const char* name) {
  auto* heading = makeLabel(title);
  gtk_widget_add_css_class(heading, "heading");
  gtk_box_append(GTK_BOX(column), heading);
  auto* card = makeCard();
  setAccessibleName(card, name);
  gtk_box_append(GTK_BOX(column), card);
  return card;
}

void MenuSettings::change(const std::function<void(AppSettingsItem&)>& edit) {
  if (isUpdating) return;
  auto wanted = model.settings();
  edit(wanted);
  model.setSettings(wanted);
}

void MenuSettings::update() {
  const auto& settings = model.settings();
  isUpdating = true;
  turn(showsMenu, settings.showInFinder.value_or(true));
  // As the menu counts.
  const auto all = static_cast<std::size_t>(maxInMenu);
  gtk_spin_button_set_value(GTK_SPIN_BUTTON(count), static_cast<double>(visibleCount(settings, all)));
  turn(sections, settings.showCategories.value_or(true));
  const bool isAlways = text::isEqual(settings.defaultBehavior.value_or(promptBehavior), promptBehavior);
  gtk_drop_down_set_selected(GTK_DROP_DOWN(asks), isAlways ? asksAlways : asksIfRequired);
  turn(notifies, settings.notificationsEnabled.value_or(true));
  gtk_widget_set_sensitive(column, model.isWritable() ? TRUE : FALSE);
  isUpdating = false;
}

}  // namespace sprig::settings

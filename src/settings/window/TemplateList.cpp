// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/TemplateList.h"

#include <algorithm>
#include <utility>

#include "settings/window/Widgets.h"
#include "translation/translated.h"
#include "wire/Pointers.h"

namespace sprig::settings {

namespace {

constexpr const char* keyType = "(st)";

void appendItem(GMenu* menu, const char* title, const char* action, const TemplateKey& key) {
  const wire::ObjectPointer<GMenuItem> item(g_menu_item_new(title, nullptr));
  g_menu_item_set_action_and_target(item.get(), action, keyType, key.id.c_str(),
                                    static_cast<guint64>(key.occurrence));
  g_menu_append_item(menu, item.get());
}

}  // namespace

TemplateList::TemplateList(SettingsModel& settingsModel, Handlers pageHandlers)
    : model(settingsModel),
      handlers(std::move(pageHandlers)),
      page(makeBox(GTK_ORIENTATION_VERTICAL, 0)),
      searchBar(gtk_search_bar_new()),
      search(gtk_search_entry_new()),
      note(makeText("")),
      rows(model, rowHandlers(), handlers.edit),
      empty(makeBox(GTK_ORIENTATION_VERTICAL, gap)),
      emptyTitle(gtk_label_new("")),
      emptyText(gtk_label_new("")),
      emptyButton(gtk_button_new_with_label(translated("New Template"))) {
  makePage();
  makeEmptyPage();
  makeActions();
  makeShortcuts();
}

void TemplateList::makePage() {
  gtk_widget_add_css_class(note, "sprig-note");
  auto* column = makeBox(GTK_ORIENTATION_VERTICAL, gap);
  for (auto* part : {note, rows.widget(), empty}) gtk_box_append(GTK_BOX(column), part);
  auto* scroller = makeScrolledColumn(column);
  gtk_box_append(GTK_BOX(page), makeSearch());
  gtk_box_append(GTK_BOX(page), scroller);
  rows.scrollIn(GTK_SCROLLED_WINDOW(scroller));
}

GtkWidget* TemplateList::makeSearch() {
  gtk_widget_set_size_request(search, columnWidth / 2, -1);
  setAccessibleName(search, translated("Search Templates"));
  gtk_search_bar_set_child(GTK_SEARCH_BAR(searchBar), search);
  gtk_search_bar_connect_entry(GTK_SEARCH_BAR(searchBar), GTK_EDITABLE(search));
  // Not "search-changed", which waits until the user pauses.
  connect(search, "changed", [this] {
    rows.scrollToTop();
    showFound();
  });
  connect(search, "activate", [this] { focusFirst(); });
  return searchBar;
}

void TemplateList::makeEmptyPage() {
  gtk_widget_add_css_class(emptyTitle, "title-2");
  gtk_widget_add_css_class(emptyText, "dim-label");
  gtk_label_set_wrap(GTK_LABEL(emptyText), TRUE);
  gtk_label_set_max_width_chars(GTK_LABEL(emptyText), 50);
  gtk_label_set_justify(GTK_LABEL(emptyText), GTK_JUSTIFY_CENTER);
  gtk_widget_add_css_class(emptyButton, "suggested-action");
  gtk_widget_set_halign(emptyButton, GTK_ALIGN_CENTER);
  connect(emptyButton, "clicked", [this] { addNew(); });
  auto* icon = makeDecoration(drawableIcon("doc.badge.plus").c_str());
  gtk_image_set_pixel_size(GTK_IMAGE(icon), 64);
  gtk_widget_add_css_class(icon, "dim-label");
  for (auto* part : {icon, emptyTitle, emptyText, emptyButton}) gtk_box_append(GTK_BOX(empty), part);
  gtk_widget_set_margin_top(empty, 4 * pageMargin);
}

void TemplateList::makeActions() {
  addAction("edit", handlers.edit);
  addAction("duplicate", [this](const TemplateKey& key) { duplicate(key); });
  addAction("up", [this](const TemplateKey& key) { move(key, -1); });
  addAction("down", [this](const TemplateKey& key) { move(key, 1); });
  addAction("top", [this](const TemplateKey& key) { moveTo(key, 0); });
  addAction("favorite", [this](const TemplateKey& key) {
    if (const auto* item = model.find(key)) model.setFavorite(key, !item->favorite);
  });
  addAction("remove", [this](const TemplateKey& key) { remove(key); });
}

void TemplateList::addAction(const char* name, std::function<void(const TemplateKey&)> perform) {
  auto* group = static_cast<GSimpleActionGroup*>(g_object_get_data(G_OBJECT(page), "actions"));
  if (group == nullptr) {
    group = g_simple_action_group_new();
    g_object_set_data_full(G_OBJECT(page), "actions", group, g_object_unref);
    gtk_widget_insert_action_group(page, "template", G_ACTION_GROUP(group));
  }
  using Perform = std::function<void(const TemplateKey&)>;
  const wire::ObjectPointer<GSimpleAction> action(g_simple_action_new(name, G_VARIANT_TYPE(keyType)));
  g_signal_connect_data(
      action.get(), "activate", G_CALLBACK(+[](GSimpleAction*, GVariant* target, void* function) {
        const char* id = nullptr;
        guint64 occurrence = 0;
        g_variant_get(target, "(&st)", &id, &occurrence);
        (*static_cast<Perform*>(function))({id, occurrence});
      }),
      new Perform(std::move(perform)),
      [](void* function, GClosure*) { delete static_cast<Perform*>(function); }, GConnectFlags{});
  g_action_map_add_action(G_ACTION_MAP(group), G_ACTION(action.get()));
}

void TemplateList::makeShortcuts() {
  addRowShortcut("<Alt>Up", [this](const TemplateKey& key) { move(key, -1); });
  addRowShortcut("<Alt>Down", [this](const TemplateKey& key) { move(key, 1); });
  addRowShortcut("<Alt>Home", [this](const TemplateKey& key) { moveTo(key, 0); });
  addRowShortcut("<Alt>End", [this](const TemplateKey& key) { moveTo(key, model.rows().size() - 1); });
  addRowShortcut("F2", handlers.edit);
  addRowShortcut("<Control>d", [this](const TemplateKey& key) { duplicate(key); });
  addRowShortcut("Delete", [this](const TemplateKey& key) { remove(key); });
  for (const auto* keys : {"Menu", "<Shift>F10"})
    addRowShortcut(keys, [this](const TemplateKey& key) { rows.openMenu(key); });
}

void TemplateList::addRowShortcut(const char* keys, std::function<void(const TemplateKey&)> perform) {
  addShortcut(rows.keyboardWidget(), keys, [this, perform = std::move(perform)] {
    const auto key = rows.focused();
    if (key) perform(*key);
    return key.has_value();
  });
}

TemplateRowView::Handlers TemplateList::rowHandlers() {
  return {[this](const TemplateKey& key, bool isEnabled) { model.setEnabled(key, isEnabled); },
          [this](const TemplateKey& dragged, const TemplateKey& target, bool isBelow) {
            drop(dragged, target, isBelow);
          },
          [this](const TemplateKey& key) { return menuOf(key); }};
}

GMenuModel* TemplateList::menuOf(const TemplateKey& key) const {
  auto* menu = g_menu_new();
  const auto addSection = [&](std::initializer_list<std::pair<const char*, const char*>> items) {
    const wire::ObjectPointer<GMenu> section(g_menu_new());
    for (const auto& [title, action] : items) appendItem(section.get(), title, action, key);
    g_menu_append_section(menu, nullptr, G_MENU_MODEL(section.get()));
  };
  const auto* item = model.find(key);
  const bool isFavorite = item != nullptr && item->favorite;
  addSection(
      {{translated("_Edit…"), "template.edit"},
       {translated("_Duplicate"), "template.duplicate"},
       {isFavorite ? translated("No _Favourite") : translated("Mark as _Favourite"), "template.favorite"}});
  addSection({{translated("Move _Up"), "template.up"},
              {translated("Move Do_wn"), "template.down"},
              {translated("Move to _Top"), "template.top"}});
  addSection({{translated("_Remove"), "template.remove"}});
  return G_MENU_MODEL(menu);
}

void TemplateList::update() {
  noteNews();
  updateNote();
  showFound();
}

void TemplateList::noteNews() {
  auto before = std::exchange(known, {});
  news.reset();
  for (const auto& row : model.rows()) {
    if (!before.contains({row.key.id, row.key.occurrence})) news = row.key;
    known.emplace(row.key.id, row.key.occurrence);
  }
}

void TemplateList::showFound() {
  const TemplateSearch wanted(gtk_editable_get_text(GTK_EDITABLE(search)));
  rows.show(wanted.in(model.rows()),
            wanted.isEmpty() ? TemplateRows::Divider::shown : TemplateRows::Divider::hidden);
  const bool isAny = !rows.positions().empty();
  const bool hasNone = model.rows().empty();
  setVisible(rows.widget(), isAny);
  setVisible(empty, !isAny);
  setVisible(emptyButton, hasNone && model.isWritable());
  gtk_label_set_text(GTK_LABEL(emptyTitle),
                     hasNone ? translated("No Templates") : translated("Nothing Found"));
  gtk_label_set_text(
      GTK_LABEL(emptyText),
      hasNone ? translated("A template is a name and a text for new files. Make one, and the Sprig menu of "
                           "your file manager offers it.")
              : translated("No template has this in its name, extension or category."));
}

void TemplateList::updateNote() {
  std::string text;
  if (!model.isWritable()) {
    text = translated("The configuration is read-only, so that nothing can be changed here.");
  } else if (model.text().empty()) {
    text = translated("These templates come with Sprig. Change, remove or add whatever you like.");
  } else if (!model.settings().showInFinder.value_or(true)) {
    text = translated("Sprig doesn’t show in file managers now. “Settings” above has the switch.");
  }
  gtk_label_set_text(GTK_LABEL(note), text.c_str());
  setVisible(note, !text.empty());
}

void TemplateList::focus(const TemplateKey& key) {
  if (const auto place = rows.placeOf(key)) rows.focus(*place);
}

void TemplateList::focusFirst() {
  if (!rows.positions().empty()) rows.focus(0);
}

void TemplateList::focusNews() {
  if (news) return focus(*news);
  if (!rows.focused()) focusFirst();
}

void TemplateList::beginSearch() {
  gtk_search_bar_set_search_mode(GTK_SEARCH_BAR(searchBar), TRUE);
  gtk_widget_grab_focus(search);
}

void TemplateList::addNew() {
  if (const auto key = model.addNew()) handlers.edit(*key);
}

/// Past its neighbour in sight, however many others a search has hidden between them.
void TemplateList::move(const TemplateKey& key, std::ptrdiff_t by) {
  const auto place = rows.placeOf(key);
  const auto& shown = rows.positions();
  if (!place || (by < 0 && *place == 0)) return;
  const auto neighbour = *place + static_cast<std::size_t>(by);
  if (neighbour < shown.size()) moveTo(key, shown[neighbour]);
}

void TemplateList::moveTo(const TemplateKey& key, std::size_t position) {
  model.move(key, position);
  focus(key);
}

void TemplateList::drop(const TemplateKey& dragged, const TemplateKey& target, bool isBelow) {
  const auto from = model.positionOf(dragged);
  const auto to = model.positionOf(target);
  if (!from || !to || *from == *to) return;
  const auto gapPosition = *to + (isBelow ? 1 : 0);
  moveTo(dragged, gapPosition > *from ? gapPosition - 1 : gapPosition);
}

void TemplateList::remove(const TemplateKey& key) {
  const auto* item = model.find(key);
  const auto place = rows.placeOf(key);
  if (item == nullptr || !place) return;
  const auto name = item->name;
  if (!model.remove(key)) return;
  if (!rows.positions().empty()) rows.focus(std::min(*place, rows.positions().size() - 1));
  handlers.removed(name);
}

void TemplateList::duplicate(const TemplateKey& key) {
  if (const auto copy = model.duplicate(key)) focus(*copy);
}

}  // namespace sprig::settings

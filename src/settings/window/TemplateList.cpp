// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/TemplateList.h"

#include <algorithm>
#include <utility>

#include "settings/window/Widgets.h"
#include "wire/Pointers.h"

namespace sprig::settings {

namespace {

constexpr const char* keyType = "(st)";

TemplateRowView* viewIn(void* row) {
  return static_cast<TemplateRowView*>(g_object_get_data(G_OBJECT(row), "view"));
}

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
      list(makeCard()),
      empty(makeBox(GTK_ORIENTATION_VERTICAL, gap)),
      emptyTitle(gtk_label_new("")),
      emptyText(gtk_label_new("")),
      emptyButton(gtk_button_new_with_label("New Template")) {
  makePage();
  makeEmptyPage();
  makeActions();
  makeShortcuts();
}

void TemplateList::makePage() {
  gtk_widget_add_css_class(note, "sprig-note");
  setAccessibleName(list, "Templates");
  auto* column = makeBox(GTK_ORIENTATION_VERTICAL, gap);
  for (auto* part : {note, list, empty}) gtk_box_append(GTK_BOX(column), part);
  gtk_box_append(GTK_BOX(page), makeSearch());
  gtk_box_append(GTK_BOX(page), makeScrolledColumn(column));
  auto* box = GTK_LIST_BOX(list);
  g_signal_connect(box, "row-activated", G_CALLBACK(+[](GtkListBox*, GtkListBoxRow* row, TemplateList* self) {
                     self->handlers.edit(viewIn(row)->key());
                   }),
                   this);
  gtk_list_box_set_sort_func(
      box,
      [](GtkListBoxRow* left, GtkListBoxRow* right, void*) -> int {
        return viewIn(left)->position() < viewIn(right)->position() ? -1 : 1;
      },
      nullptr, nullptr);
  gtk_list_box_set_filter_func(
      box,
      [](GtkListBoxRow* row, void* self) -> gboolean {
        return static_cast<TemplateList*>(self)->isShown(*viewIn(row)) ? TRUE : FALSE;
      },
      this, nullptr);
  gtk_list_box_set_header_func(
      box,
      [](GtkListBoxRow* row, GtkListBoxRow* before, void* self) {
        static_cast<TemplateList*>(self)->updateHeader(row, before);
      },
      this, nullptr);
}

GtkWidget* TemplateList::makeSearch() {
  gtk_widget_set_size_request(search, columnWidth / 2, -1);
  setAccessibleName(search, "Search Templates");
  gtk_search_bar_set_child(GTK_SEARCH_BAR(searchBar), search);
  gtk_search_bar_connect_entry(GTK_SEARCH_BAR(searchBar), GTK_EDITABLE(search));
  connect(search, "search-changed", [this] { showFound(); });
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
  addRowShortcut("<Alt>Up", [this](const TemplateRowView& view) { move(view.key(), -1); });
  addRowShortcut("<Alt>Down", [this](const TemplateRowView& view) { move(view.key(), 1); });
  addRowShortcut("<Alt>Home", [this](const TemplateRowView& view) { moveTo(view.key(), 0); });
  addRowShortcut("<Alt>End", [this](const TemplateRowView& view) { moveTo(view.key(), views.size() - 1); });
  addRowShortcut("F2", [this](const TemplateRowView& view) { handlers.edit(view.key()); });
  addRowShortcut("<Control>d", [this](const TemplateRowView& view) { duplicate(view.key()); });
  addRowShortcut("Delete", [this](const TemplateRowView& view) { remove(view.key()); });
  for (const auto* keys : {"Menu", "<Shift>F10"}) {
    addRowShortcut(keys, [this](const TemplateRowView& view) { viewOf(view.key())->openMenu(); });
  }
  auto* click = gtk_gesture_click_new();
  gtk_gesture_single_set_button(GTK_GESTURE_SINGLE(click), GDK_BUTTON_SECONDARY);
  g_signal_connect(click, "pressed",
                   G_CALLBACK(+[](GtkGestureClick*, int, double, double y, TemplateList* self) {
                     auto* row = gtk_list_box_get_row_at_y(GTK_LIST_BOX(self->list), static_cast<int>(y));
                     if (row != nullptr) viewIn(row)->openMenu();
                   }),
                   this);
  gtk_widget_add_controller(list, GTK_EVENT_CONTROLLER(click));
}

void TemplateList::addRowShortcut(const char* keys, std::function<void(const TemplateRowView&)> perform) {
  addShortcut(list, keys, [this, perform = std::move(perform)] {
    const auto* view = focused();
    if (view != nullptr) perform(*view);
    return view != nullptr;
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
  addSection({{"_Edit…", "template.edit"},
              {"_Duplicate", "template.duplicate"},
              {isFavorite ? "No _Favourite" : "Mark as _Favourite", "template.favorite"}});
  addSection(
      {{"Move _Up", "template.up"}, {"Move Do_wn", "template.down"}, {"Move to _Top", "template.top"}});
  addSection({{"_Remove", "template.remove"}});
  return G_MENU_MODEL(menu);
}

void TemplateList::update() {
  const auto& rows = model.rows();
  std::vector<std::unique_ptr<TemplateRowView>> old = std::exchange(views, {});
  news.reset();
  for (std::size_t position = 0; position < rows.size(); ++position) {
    const auto& row = rows[position];
    auto found = std::find_if(old.begin(), old.end(),
                              [&](const auto& view) { return view && view->key() == row.key; });
    auto view = found != old.end() ? std::move(*found) : nullptr;
    const bool isNew = view == nullptr;
    if (isNew) {
      view = std::make_unique<TemplateRowView>(row.key, viewHandlers);
      g_object_set_data(G_OBJECT(view->widget()), "view", view.get());
    }
    view->update(row, position, rows.size(), model.isWritable());
    if (isNew) {
      gtk_list_box_append(GTK_LIST_BOX(list), GTK_WIDGET(view->widget()));
      news = row.key;
    }
    views.push_back(std::move(view));
  }
  for (const auto& view : old) {
    if (view) gtk_list_box_remove(GTK_LIST_BOX(list), GTK_WIDGET(view->widget()));
  }
  gtk_list_box_invalidate_sort(GTK_LIST_BOX(list));
  updateNote();
  showFound();
}

void TemplateList::showFound() {
  const auto isFirst = [](const auto& view) {
    return view->shown().placement == Placement::underMoreTemplates;
  };
  const auto first = std::find_if(views.begin(), views.end(), isFirst);
  const bool isSearching = gtk_editable_get_text(GTK_EDITABLE(search))[0] != '\0';
  firstUnderMore = first == views.end() || isSearching ? nullptr : first->get();
  gtk_list_box_invalidate_filter(GTK_LIST_BOX(list));
  gtk_list_box_invalidate_headers(GTK_LIST_BOX(list));
  for (const auto& view : views) {
    gtk_accessible_update_state(GTK_ACCESSIBLE(view->widget()), GTK_ACCESSIBLE_STATE_HIDDEN,
                                isShown(*view) ? FALSE : TRUE, -1);
  }
  const bool isAny =
      std::any_of(views.begin(), views.end(), [&](const auto& view) { return isShown(*view); });
  setVisible(list, isAny);
  setVisible(empty, !isAny);
  setVisible(emptyButton, views.empty() && model.isWritable());
  gtk_label_set_text(GTK_LABEL(emptyTitle), views.empty() ? "No Templates" : "Nothing Found");
  gtk_label_set_text(GTK_LABEL(emptyText),
                     views.empty()
                         ? "A template is a name and a text for new files. Make one, and the Sprig menu of "
                           "your file manager offers it."
                         : "No template has this in its name, extension or category.");
}

void TemplateList::updateNote() {
  std::string text;
  if (!model.isWritable()) {
    text = "The configuration is read-only, so that nothing can be changed here.";
  } else if (model.text().empty()) {
    text = "These templates come with Sprig. Change, remove or add whatever you like.";
  } else if (!model.settings().showInFinder.value_or(true)) {
    text = "Sprig doesn’t show in file managers now. “Settings” above has the switch.";
  }
  gtk_label_set_text(GTK_LABEL(note), text.c_str());
  setVisible(note, !text.empty());
}

void TemplateList::updateHeader(GtkListBoxRow* row, GtkListBoxRow*) const {
  if (viewIn(row) != firstUnderMore) return gtk_list_box_row_set_header(row, nullptr);
  if (gtk_list_box_row_get_header(row) != nullptr) return;
  auto* header = makeLabel("Under “More Templates”");
  for (const auto* style : {"sprig-divider", "dim-label", "caption"}) gtk_widget_add_css_class(header, style);
  gtk_list_box_row_set_header(row, header);
}

bool TemplateList::isShown(const TemplateRowView& view) const {
  return isFound(view.shown(), gtk_editable_get_text(GTK_EDITABLE(search)));
}

TemplateRowView* TemplateList::viewOf(const TemplateKey& key) const {
  const auto view = std::find_if(views.begin(), views.end(),
                                 [&](const auto& candidate) { return candidate->key() == key; });
  return view == views.end() ? nullptr : view->get();
}

/// Also while something in the row has the keyboard.
TemplateRowView* TemplateList::focused() const {
  auto* child = gtk_widget_get_focus_child(list);
  return child == nullptr ? nullptr : viewIn(child);
}

void TemplateList::focus(const TemplateKey& key) {
  if (const auto* view = viewOf(key)) gtk_widget_grab_focus(GTK_WIDGET(view->widget()));
}

void TemplateList::focusFirst() {
  const auto first =
      std::find_if(views.begin(), views.end(), [&](const auto& view) { return isShown(*view); });
  if (first != views.end()) focus((*first)->key());
}

void TemplateList::focusNews() {
  if (news) return focus(*news);
  if (focused() == nullptr) focusFirst();
}

void TemplateList::beginSearch() {
  gtk_search_bar_set_search_mode(GTK_SEARCH_BAR(searchBar), TRUE);
  gtk_widget_grab_focus(search);
}

void TemplateList::addNew() {
  if (const auto key = model.addNew()) handlers.edit(*key);
}

void TemplateList::move(const TemplateKey& key, std::ptrdiff_t by) {
  const auto position = model.positionOf(key);
  if (!position || (by < 0 && *position == 0)) return;
  moveTo(key, *position + static_cast<std::size_t>(by));
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
  const auto position = model.positionOf(key);
  if (item == nullptr || !position) return;
  const auto name = item->name;
  if (!model.remove(key)) return;
  if (!views.empty()) focus(views[std::min(*position, views.size() - 1)]->key());
  handlers.removed(name);
}

void TemplateList::duplicate(const TemplateKey& key) {
  if (const auto copy = model.duplicate(key)) focus(*copy);
}

}  // namespace sprig::settings

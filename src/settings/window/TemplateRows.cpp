// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/TemplateRows.h"

#include <algorithm>
#include <utility>

#include "settings/window/Widgets.h"
#include "translation/translated.h"

namespace sprig::settings {

namespace {

/// Widgets before and behind those in sight, so that scrolling finds them made.
constexpr std::size_t spareRows = 4;
/// Before the window has a size.
constexpr double heightAtFirst = 640;  // pixels
constexpr double rowHeightAtFirst = 47;
constexpr double dividerHeightAtFirst = 30;

TemplateRowView* viewIn(void* row) {
  return static_cast<TemplateRowView*>(g_object_get_data(G_OBJECT(row), "view"));
}

int minimumHeight(GtkWidget* widget) {
  int height = 0;
  gtk_widget_measure(widget, GTK_ORIENTATION_VERTICAL, -1, &height, nullptr, nullptr, nullptr);
  return height;
}

void setHeight(GtkWidget* space, double height) {
  gtk_widget_set_size_request(space, -1, static_cast<int>(std::max(height, 0.0)));
  setVisible(space, height > 0);
}

}  // namespace

TemplateRows::TemplateRows(const SettingsModel& settingsModel, TemplateRowView::Handlers rowHandlers,
                           std::function<void(const TemplateKey&)> whenActivated)
    : model(settingsModel),
      handlers(std::move(rowHandlers)),
      activated(std::move(whenActivated)),
      column(makeBox(GTK_ORIENTATION_VERTICAL, 0)),
      above(makeBox(GTK_ORIENTATION_VERTICAL, 0)),
      list(makeCard()),
      below(makeBox(GTK_ORIENTATION_VERTICAL, 0)),
      geometry{0, rowHeightAtFirst, {}, dividerHeightAtFirst},
      follow([this] { followScrolling(); }),
      drops(GTK_LIST_BOX(list), [](const GValue& dragged, GtkListBoxRow* target, bool isBelow) {
        return viewIn(target)->drop(dragged, isBelow);
      }) {
  for (auto* part : {above, list, below}) gtk_box_append(GTK_BOX(column), part);
  setAccessibleName(list, translated("Templates"));
  g_signal_connect(list, "row-activated",
                   G_CALLBACK(+[](GtkListBox*, GtkListBoxRow* row, TemplateRows* self) {
                     self->activated(viewIn(row)->key());
                   }),
                   this);
  setOrder();
  addKeys();
  addMenuClick();
  connect(list, "realize",
          [this] { connect(gtk_widget_get_root(list), "notify::focus-widget", [this] { followFocus(); }); });
}

void TemplateRows::setOrder() {
  auto* box = GTK_LIST_BOX(list);
  gtk_list_box_set_sort_func(
      box,
      [](GtkListBoxRow* left, GtkListBoxRow* right, void*) -> int {
        const auto first = viewIn(left)->place();
        const auto second = viewIn(right)->place();
        return first == second ? 0 : first < second ? -1 : 1;
      },
      nullptr, nullptr);
  gtk_list_box_set_filter_func(
      box, [](GtkListBoxRow* row, void*) -> gboolean { return viewIn(row)->place() ? TRUE : FALSE; }, nullptr,
      nullptr);
  gtk_list_box_set_header_func(
      box,
      [](GtkListBoxRow* row, GtkListBoxRow*, void* self) {
        static_cast<TemplateRows*>(self)->updateDivider(row);
      },
      this, nullptr);
}

/// The list itself knows only the rows that have widgets.
void TemplateRows::addKeys() {
  constexpr std::ptrdiff_t page = 10;
  constexpr std::ptrdiff_t all = 1'000'000;
  for (const auto& [keys, rows] : std::initializer_list<std::pair<const char*, std::ptrdiff_t>>{
           {"Up", -1}, {"Down", 1}, {"Page_Up", -page}, {"Page_Down", page}, {"Home", -all}, {"End", all}}) {
    addShortcut(list, keys, [this, by = rows] {
      if (!focused()) return false;
      step(by);
      return true;
    });
  }
}

void TemplateRows::addMenuClick() {
  auto* click = gtk_gesture_click_new();
  gtk_gesture_single_set_button(GTK_GESTURE_SINGLE(click), GDK_BUTTON_SECONDARY);
  g_signal_connect(click, "pressed",
                   G_CALLBACK(+[](GtkGestureClick*, int, double, double y, TemplateRows* self) {
                     auto* row = gtk_list_box_get_row_at_y(GTK_LIST_BOX(self->list), static_cast<int>(y));
                     if (row != nullptr) viewIn(row)->openMenu();
                   }),
                   this);
  gtk_widget_add_controller(list, GTK_EVENT_CONTROLLER(click));
}

void TemplateRows::scrollIn(GtkScrolledWindow* scroller) {
  // It would scroll to where a widget was when it showed another row.
  gtk_viewport_set_scroll_to_focus(GTK_VIEWPORT(gtk_scrolled_window_get_child(scroller)), FALSE);
  scrolling = gtk_scrolled_window_get_vadjustment(scroller);
  drops.scrollIn(scroller);
  // They come while sizes are given out, when nothing may be changed.
  for (const auto* change : {"value-changed", "changed"}) {
    connect(scrolling, change, [this] {
      if (!follow.isStarted()) follow.start({});
    });
  }
}

void TemplateRows::show(std::vector<std::size_t> positions, Divider divider) {
  found = std::move(positions);
  const auto isUnderMore = [&](std::size_t position) {
    return model.rows()[position].placement == Placement::underMoreTemplates;
  };
  const auto first = std::find_if(found.begin(), found.end(), isUnderMore);
  geometry.count = found.size();
  geometry.divided.reset();
  if (divider == Divider::shown && first != found.end())
    geometry.divided = static_cast<std::size_t>(first - found.begin());
  fill({}, true);
}

std::optional<std::size_t> TemplateRows::placeOf(const TemplateKey& key) const {
  const auto isIt = [&](std::size_t position) { return model.rows()[position].key == key; };
  const auto place = std::find_if(found.begin(), found.end(), isIt);
  if (place == found.end()) return std::nullopt;
  return static_cast<std::size_t>(place - found.begin());
}

void TemplateRows::fill(std::optional<std::size_t> wanted, bool isNewData) {
  measure();
  inSight = placesInSight(spareRows);
  const auto places = placesToHave(wanted);
  bind(places, isNewData);
  place(places);
}

/// Themes decide about heights, which are not known before the first row is on the screen.
void TemplateRows::measure() {
  if (gtk_widget_get_realized(list) == FALSE || views.empty()) return;
  geometry.rowHeight = minimumHeight(GTK_WIDGET(views.front()->widget()));
  for (const auto& view : views) {
    if (auto* header = gtk_list_box_row_get_header(view->widget()))
      geometry.dividerHeight = minimumHeight(header);
  }
}

RowGeometry::Range TemplateRows::placesInSight(std::size_t spare) const {
  const double size = scrolling == nullptr ? 0 : gtk_adjustment_get_page_size(scrolling);
  const double page = size > 0 ? size : heightAtFirst;
  // A list that has become shorter is scrolled back when it gets its new size.
  const double lowest = std::max(geometry.topOf(geometry.count) - page, 0.0);
  const double top = scrolling == nullptr ? 0 : gtk_adjustment_get_value(scrolling) - topInScroller();
  return geometry.rowsBetween(std::min(top, lowest), std::min(top, lowest) + page, spare);
}

/// Within what is scrolled, wherever that was when sizes were given out last.
double TemplateRows::topInScroller() const {
  auto* viewport = gtk_widget_get_ancestor(column, GTK_TYPE_VIEWPORT);
  if (viewport == nullptr) return 0;
  auto* content = gtk_viewport_get_child(GTK_VIEWPORT(viewport));
  const graphene_point_t origin{0, 0};
  graphene_point_t top;
  if (gtk_widget_compute_point(column, content, &origin, &top) == FALSE) return 0;
  return gtk_widget_get_margin_top(content) + static_cast<double>(top.y);
}

/// Those in sight, and one out of sight that has the keyboard or is to get it: it stays beside the others.
std::vector<std::size_t> TemplateRows::placesToHave(std::optional<std::size_t> wanted) const {
  std::vector<std::size_t> places;
  const auto add = [&](std::optional<std::size_t> place, bool isHere) {
    if (place && isHere && (places.empty() || places.back() != *place)) places.push_back(*place);
  };
  const auto key = focused();
  const auto focusPlace = wanted || !key ? wanted : placeOf(*key);
  add(focusPlace, focusPlace < inSight.first);
  for (auto place = inSight.first; place < inSight.last; ++place) places.push_back(place);
  add(focusPlace, focusPlace >= inSight.last);
  return places;
}

/// Has the views show what is at these places; those that show it already stay, with the keyboard.
void TemplateRows::bind(const std::vector<std::size_t>& places, bool isNewData) {
  std::vector<TemplateRowView*> free;
  std::vector<std::size_t> missing = places;
  for (const auto& view : views) {
    const auto kept = std::find_if(missing.begin(), missing.end(),
                                   [&](auto place) { return rowAt(place).key == view->key(); });
    if (!view->place() || kept == missing.end()) {
      free.push_back(view.get());
      continue;
    }
    if (isNewData) bindView(*view, *kept);
    missing.erase(kept);
  }
  for (const auto place : missing) {
    if (free.empty()) {
      views.push_back(std::make_unique<TemplateRowView>(handlers));
      free.push_back(views.back().get());
      g_object_set_data(G_OBJECT(free.back()->widget()), "view", free.back());
      gtk_list_box_append(GTK_LIST_BOX(list), GTK_WIDGET(free.back()->widget()));
    }
    setAside(*free.back());
    bindView(*free.back(), place);
    free.pop_back();
  }
  for (auto* view : free) setAside(*view);
}

void TemplateRows::bindView(TemplateRowView& view, std::size_t place) {
  view.show(rowAt(place),
            {place, place + 1 == found.size(), found[place], model.rows().size(), model.isWritable()});
  gtk_accessible_update_state(GTK_ACCESSIBLE(view.widget()), GTK_ACCESSIBLE_STATE_HIDDEN, FALSE, -1);
}

/// What the user types next must not go to whatever the view shows then.
void TemplateRows::setAside(TemplateRowView& view) const {
  if (!view.place()) return;
  if (&view == focusedView()) gtk_root_set_focus(gtk_widget_get_root(list), nullptr);
  view.hide();
  gtk_accessible_update_state(GTK_ACCESSIBLE(view.widget()), GTK_ACCESSIBLE_STATE_HIDDEN, TRUE, -1);
}

void TemplateRows::place(const std::vector<std::size_t>& places) {
  gtk_list_box_invalidate_sort(GTK_LIST_BOX(list));
  gtk_list_box_invalidate_filter(GTK_LIST_BOX(list));
  gtk_list_box_invalidate_headers(GTK_LIST_BOX(list));
  const double lone = geometry.rowHeight;
  const bool isOneAbove = !places.empty() && places.front() < inSight.first;
  const bool isOneBelow = !places.empty() && places.back() >= inSight.last;
  setHeight(above, geometry.topOf(inSight.first) - (isOneAbove ? lone : 0));
  const double rest = geometry.topOf(geometry.count) - geometry.topOf(inSight.last);
  setHeight(below, rest - (isOneBelow ? lone : 0));
}

void TemplateRows::updateDivider(GtkListBoxRow* row) const {
  const auto place = viewIn(row)->place();
  if (!place || place != geometry.divided || !inSight.has(*place))
    return gtk_list_box_row_set_header(row, nullptr);
  if (gtk_list_box_row_get_header(row) != nullptr) return;
  auto* header = makeLabel(translated("Under “More Templates”"));
  for (const auto* style : {"sprig-divider", "dim-label", "caption"}) gtk_widget_add_css_class(header, style);
  gtk_list_box_row_set_header(row, header);
}

void TemplateRows::step(std::ptrdiff_t rows) {
  const auto key = focused();
  const auto place = key ? placeOf(*key) : std::nullopt;
  if (!place) return;
  const auto last = static_cast<std::ptrdiff_t>(found.size()) - 1;
  focus(static_cast<std::size_t>(
      std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(*place) + rows, 0, last)));
}

void TemplateRows::focus(std::size_t place) {
  const auto key = rowAt(place).key;
  fill(place, false);
  if (const auto* view = viewOf(key)) gtk_widget_grab_focus(GTK_WIDGET(view->widget()));
  revealed = key;
  reveal();
}

void TemplateRows::scrollToTop() { gtk_adjustment_set_value(scrolling, 0); }

/// Also for who comes by the Tab key.
void TemplateRows::followFocus() {
  if (const auto key = focused()) {
    revealed = key;
    if (!follow.isStarted()) follow.start({});
  }
}

void TemplateRows::followScrolling() {
  const auto needed = placesInSight(0);
  if (!inSight.has(needed.first) || needed.last > inSight.last) fill({}, false);
  if (revealed) reveal();
}

/// Scrolls as far as the list has grown already; what is missing comes when it has.
void TemplateRows::reveal() {
  const auto place = placeOf(*revealed);
  if (scrolling == nullptr || !place) return revealed.reset();
  const double offset = topInScroller();
  const double top = offset + geometry.topOf(*place);
  const double bottom = offset + geometry.topOf(*place + 1);
  const bool isThere = bottom <= gtk_adjustment_get_upper(scrolling);
  gtk_adjustment_clamp_page(scrolling, top, bottom);
  if (isThere) revealed.reset();
}

void TemplateRows::openMenu(const TemplateKey& key) const {
  if (auto* view = viewOf(key)) view->openMenu();
}

TemplateRowView* TemplateRows::viewOf(const TemplateKey& key) const {
  const auto view = std::find_if(views.begin(), views.end(), [&](const auto& candidate) {
    return candidate->place() && candidate->key() == key;
  });
  return view == views.end() ? nullptr : view->get();
}

TemplateRowView* TemplateRows::focusedView() const {
  auto* root = gtk_widget_get_root(list);
  auto* focus = root == nullptr ? nullptr : gtk_root_get_focus(root);
  auto* row = focus == nullptr ? nullptr : gtk_widget_get_ancestor(focus, GTK_TYPE_LIST_BOX_ROW);
  return row != nullptr && gtk_widget_get_parent(row) == list ? viewIn(row) : nullptr;
}

std::optional<TemplateKey> TemplateRows::focused() const {
  const auto* view = focusedView();
  if (view == nullptr || !view->place()) return std::nullopt;
  return view->key();
}

}  // namespace sprig::settings

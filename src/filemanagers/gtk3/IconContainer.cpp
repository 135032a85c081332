// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/gtk3/IconContainer.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "filemanagers/client/LocationUri.h"
#include "filemanagers/client/guardCallback.h"
#include "filemanagers/gtk3/GtkViews.h"
#include "wire/FileUri.h"
#include "wire/Pointers.h"

namespace sprig::filemanagers {

namespace {

using State = FileSelection::State;
using wire::ObjectPointer;
using wire::TextPointer;

/// Room around an item that is scrolled to, in pixels.
constexpr double margin = 6;
/// Icons that a view adds while it loads follow one another more closely.
constexpr guint millisecondsBetweenIcons = 100;

/// The URI of the folder that is shown, without a slash at its end; empty when the container doesn't tell.
std::string shownFolder(GtkWidget* container) {
  constexpr const char* name = "get-container-uri";
  GSignalQuery signal{};
  g_signal_query(g_signal_lookup(name, G_OBJECT_TYPE(container)), &signal);
  if (signal.signal_id == 0 || signal.n_params != 0 || signal.return_type != G_TYPE_STRING) return {};
  char* uri = nullptr;
  g_signal_emit_by_name(container, name, &uri);
  const TextPointer owned(uri);
  return std::string(withoutLastSlash(locationUri(uri)));
}

/// As the container labels it.
std::string labelOfFile(const std::string& uri) {
  const TextPointer path(g_filename_from_uri(uri.c_str(), nullptr, nullptr));
  const TextPointer label(path ? g_filename_display_basename(path.get()) : nullptr);
  return label ? label.get() : "";
}

/// The only icon with the label; null when there is none. Names that are not UTF-8 may look alike: then
/// `isOnly` is false. Looks at all of them, and the container counts to each of them anew.
ObjectPointer<AtkObject> findIcon(AtkObject* container, const std::string& label, bool& isOnly) {
  ObjectPointer<AtkObject> found;
  const int count = atk_object_get_n_accessible_children(container);
  for (int index = 0; index < count; ++index) {
    ObjectPointer<AtkObject> child(atk_object_ref_accessible_child(container, index));
    const char* name = child ? atk_object_get_name(child.get()) : nullptr;
    if (!name || label != name) continue;
    isOnly = !found;
    found = std::move(child);
  }
  return found;
}

/// One direction in which a container scrolls.
struct Axis {
  GtkAdjustment* adjustment;
  bool isVertical;

  double page() const { return gtk_adjustment_get_page_size(adjustment); }
  double last() const { return gtk_adjustment_get_upper(adjustment) - page(); }
  double value() const { return gtk_adjustment_get_value(adjustment); }
  void setValue(double value) const { gtk_adjustment_set_value(adjustment, value); }
};

/// That in which there is more than fits.
Axis axisOf(GtkWidget* container) {
  auto* scrollable = GTK_SCROLLABLE(container);
  const Axis vertical{gtk_scrollable_get_vadjustment(scrollable), true};
  if (vertical.last() > gtk_adjustment_get_lower(vertical.adjustment)) return vertical;
  return {gtk_scrollable_get_hadjustment(scrollable), false};
}

/// Where an item begins along the axis, and how long it is; nothing while it is too far away to tell.
std::optional<std::pair<double, double>> extentOf(GtkWidget* container, AtkComponent* item,
                                                  const Axis& axis) {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  atk_component_get_extents(item, &x, &y, &width, &height, ATK_XY_SCREEN);
  if (x == G_MININT || y == G_MININT || width <= 0 || height <= 0) return std::nullopt;
  int left = 0;
  int top = 0;
  gdk_window_get_origin(gtk_widget_get_window(container), &left, &top);
  return axis.isVertical ? std::pair<double, double>(y - top + axis.value(), height)
                         : std::pair<double, double>(x - left + axis.value(), width);
}

/// An item out of sight tells no place, so this scrolls by pages until it does, and then no further than
/// needed. `share` is how much of all items comes before it: most likely it is that far down, or near.
void scrollTo(GtkWidget* container, AtkComponent* item, double share) {
  const auto axis = axisOf(container);
  const double before = axis.value();
  const double likely = share * axis.last();
  auto extent = extentOf(container, item, axis);
  for (double away = 0; !extent && axis.page() > 0 && away < axis.last() + axis.page(); away += axis.page()) {
    for (const double at : {likely + away, likely - away}) {
      if (extent || at < -axis.page() || at > axis.last() + axis.page()) continue;
      axis.setValue(std::clamp(at, 0.0, axis.last()));
      extent = extentOf(container, item, axis);
    }
  }
  axis.setValue(before);
  if (extent) {
    const auto [begin, length] = *extent;
    gtk_adjustment_clamp_page(axis.adjustment, begin - margin, begin + length + margin);
  }
}

void press(GtkWidget* container, guint key, guint modifiers) {
  const std::unique_ptr<GdkEvent, wire::Releaser<gdk_event_free>> event(gdk_event_new(GDK_KEY_PRESS));
  event->key.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(container)));
  event->key.send_event = TRUE;
  event->key.time = gtk_get_current_event_time();
  event->key.state = modifiers;
  event->key.keyval = key;
  auto* seat = gdk_display_get_default_seat(gtk_widget_get_display(container));
  gdk_event_set_device(event.get(), gdk_seat_get_keyboard(seat));
  gtk_widget_event(container, event.get());
}

/// Nemo's items tell no place at all. With Control held, keys move the focus, which the view scrolls to, from
/// the selected item and select nothing: there and back, to a side where there is another item.
void scrollByKeys(GtkWidget* container, bool isFirst) {
  const bool isForwardRight = gtk_widget_get_direction(container) != GTK_TEXT_DIR_RTL;
  const guint forward = isForwardRight ? GDK_KEY_Right : GDK_KEY_Left;
  const guint backward = isForwardRight ? GDK_KEY_Left : GDK_KEY_Right;
  press(container, isFirst ? forward : backward, GDK_CONTROL_MASK);
  press(container, isFirst ? backward : forward, GDK_CONTROL_MASK);
}

}  // namespace

bool isIconContainer(GtkWidget* widget) {
  return (isNamed(widget, "NemoIconContainer") || isNamed(widget, "CajaIconContainer")) &&
         GTK_IS_SCROLLABLE(widget);
}

NewIcon::NewIcon(GtkWidget* iconContainer, const FileObjects& fileObjects, std::string fileUri,
                 std::function<void()> appeared)
    : container(static_cast<GtkWidget*>(g_object_ref(iconContainer))),
      parent(static_cast<AtkObject*>(g_object_ref(gtk_widget_get_accessible(iconContainer)))),
      objects(fileObjects),
      uri(std::move(fileUri)),
      tell(std::move(appeared)) {
  constexpr const char* added = "icon-added";
  GSignalQuery signal{};
  g_signal_query(g_signal_lookup(added, G_OBJECT_TYPE(iconContainer)), &signal);
  if (!objects.lookUp || signal.signal_id == 0 || signal.n_params != 1 ||
      signal.param_types[0] != G_TYPE_POINTER) {
    return;
  }
  // The container's accessible object has been listening to it for longer, so it tells of an icon first.
  g_signal_connect(parent.get(), "children-changed::add", G_CALLBACK(childAdded), this);
  g_signal_connect(container.get(), added, G_CALLBACK(iconAdded), this);
}

NewIcon::~NewIcon() {
  if (others != 0) g_source_remove(others);
  g_signal_handlers_disconnect_by_data(parent.get(), this);
  g_signal_handlers_disconnect_by_data(container.get(), this);
}

void NewIcon::childAdded(AtkObject* /*parent*/, guint /*index*/, void* child, void* self) noexcept {
  static_cast<NewIcon*>(self)->lastChild.reset(
      ATK_IS_OBJECT(child) ? static_cast<AtkObject*>(g_object_ref(child)) : nullptr);
}

void NewIcon::iconAdded(GtkWidget* /*widget*/, void* file, void* self) noexcept {
  guardCallback([&] {
    auto& icons = *static_cast<NewIcon*>(self);
    const auto wanted = icons.objects.lookUp(icons.uri.c_str());
    if (!wanted || wanted.get() != file || !icons.lastChild) return icons.awaitOthers();
    icons.icon = std::move(icons.lastChild);
    icons.tell();
  });
}

/// A view that is still loading adds many at a time.
void NewIcon::awaitOthers() {
  if (others != 0) g_source_remove(others);
  others = g_timeout_add(millisecondsBetweenIcons, allAdded, this);
}

gboolean NewIcon::allAdded(void* self) noexcept {
  auto& icons = *static_cast<NewIcon*>(self);
  icons.others = 0;
  guardCallback(icons.tell);
  return G_SOURCE_REMOVE;
}

State selectIcon(GtkWidget* container, const FileObjects& objects, const std::string& uri, AtkObject* icon) {
  if (shownFolder(container) != folderOf(uri)) return State::impossible;
  auto* accessible = gtk_widget_get_accessible(container);
  if (!accessible || !ATK_IS_SELECTION(accessible)) return State::impossible;
  bool isOnly = true;
  ObjectPointer<AtkObject> found;
  if (!icon && objects.lookUp && !objects.lookUp(uri.c_str())) return State::notYet;
  if (!icon) {
    found = findIcon(accessible, labelOfFile(uri), isOnly);
    icon = found.get();
  }
  if (!icon) return State::notYet;
  if (!isOnly) return State::impossible;
  // The focus may be on an item that is not selected. Keys alone take it from there, by selecting another
  // one.
  press(container, GDK_KEY_Home, 0);
  atk_selection_clear_selection(ATK_SELECTION(accessible));
  const int index = atk_object_get_index_in_parent(icon);
  if (index < 0 || atk_selection_add_selection(ATK_SELECTION(accessible), index) == FALSE) {
    return State::impossible;
  }
  gtk_widget_grab_focus(container);
  if (ATK_IS_COMPONENT(icon)) {
    const int count = atk_object_get_n_accessible_children(accessible);
    scrollTo(container, ATK_COMPONENT(icon), static_cast<double>(index) / std::max(1, count));
  } else {
    scrollByKeys(container, index == 0);
  }
  return State::selected;
}

}  // namespace sprig::filemanagers

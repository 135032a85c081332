// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/DialogWindow.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "dialog/WindowPlace.h"
#include "wire/Pointers.h"

namespace sprig::dialog {

namespace {

// Pixels, before the desktop's scale.
constexpr int margin = 20;
constexpr int gap = 16;
constexpr int smallGap = 8;
constexpr int maxTextsHeight = 280;
constexpr int buttonWidth = 90;
/// Characters of an average line; longer ones wrap.
constexpr int lineLength = 52;
constexpr double headingScale = 1.15;
constexpr int maxTitle = 100;  // characters
/// How long a late window keeps the focus from others: longer than a file manager takes to show a new file.
constexpr gint64 keepingTime = 2 * G_USEC_PER_SEC;

GtkWidget* makeBox(GtkOrientation orientation, int spacing) { return gtk_box_new(orientation, spacing); }

void setMargins(GtkWidget* widget, int top, int sides, int bottom) {
  gtk_widget_set_margin_top(widget, top);
  gtk_widget_set_margin_start(widget, sides);
  gtk_widget_set_margin_end(widget, sides);
  gtk_widget_set_margin_bottom(widget, bottom);
}

using Attributes = std::unique_ptr<PangoAttrList, wire::Releaser<pango_attr_list_unref>>;

/// Without hyphens where a word breaks, which could be part of a name.
Attributes plainAttributes() {
  Attributes attributes(pango_attr_list_new());
  pango_attr_list_insert(attributes.get(), pango_attr_insert_hyphens_new(FALSE));
  return attributes;
}

/// Text that wraps and can be selected and copied.
GtkWidget* makeLabel(const std::string& text, const Attributes& attributes) {
  auto* widget = gtk_label_new(text.c_str());
  auto* label = GTK_LABEL(widget);
  gtk_label_set_attributes(label, attributes.get());
  gtk_label_set_selectable(label, TRUE);
  gtk_label_set_wrap(label, TRUE);
  gtk_label_set_wrap_mode(label, PANGO_WRAP_WORD_CHAR);
  gtk_label_set_max_width_chars(label, lineLength);
  gtk_label_set_xalign(label, 0);
  gtk_widget_set_halign(widget, GTK_ALIGN_FILL);
  return widget;
}

GtkWidget* makeHeading(const std::string& text) {
  const auto attributes = plainAttributes();
  pango_attr_list_insert(attributes.get(), pango_attr_weight_new(PANGO_WEIGHT_BOLD));
  pango_attr_list_insert(attributes.get(), pango_attr_scale_new(headingScale));
  return makeLabel(text, attributes);
}

/// The first of the names that there is an icon for. Asked for all of them at once, GTK prefers the desktop's
/// theme, so a stand-in that it has would win over an icon that comes with us.
std::optional<std::string> nameInTheme(const std::vector<std::string>& names) {
  auto* theme = gtk_icon_theme_get_for_display(gdk_display_get_default());
  const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
    return gtk_icon_theme_has_icon(theme, name.c_str()) != FALSE;
  });
  return found != names.end() ? std::optional(*found) : std::nullopt;
}

GtkWidget* makeIcon(const IconSpec& spec, const std::string& name) {
  const auto role = spec.description.empty() ? GTK_ACCESSIBLE_ROLE_PRESENTATION : GTK_ACCESSIBLE_ROLE_IMG;
  auto* image = GTK_WIDGET(g_object_new(GTK_TYPE_IMAGE, "accessible-role", role, "icon-name", name.c_str(),
                                        "pixel-size", spec.size, nullptr));
  gtk_widget_set_valign(image, GTK_ALIGN_START);
  gtk_accessible_update_property(GTK_ACCESSIBLE(image), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 spec.description.c_str(), -1);
  return image;
}

/// As tall as what it holds up to a limit; beyond it scrolls.
GtkWidget* makeScroller(GtkWidget* content) {
  auto* widget = gtk_scrolled_window_new();
  auto* scroller = GTK_SCROLLED_WINDOW(widget);
  gtk_scrolled_window_set_policy(scroller, GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_propagate_natural_width(scroller, TRUE);
  gtk_scrolled_window_set_propagate_natural_height(scroller, TRUE);
  gtk_scrolled_window_set_max_content_height(scroller, maxTextsHeight);
  // A bar that only shows itself under the pointer would not tell that there is more to read.
  gtk_scrolled_window_set_overlay_scrolling(scroller, FALSE);
  gtk_scrolled_window_set_child(scroller, content);
  return widget;
}

/// A title for lists of windows.
std::string shortened(const std::string& title) {
  if (g_utf8_strlen(title.c_str(), -1) <= maxTitle) return title;
  const wire::TextPointer head(g_utf8_substring(title.c_str(), 0, maxTitle));
  return head.get() + std::string("…");
}

}  // namespace

DialogWindow::DialogWindow(const Show& show, Report reportEvent)
    : listener(std::move(reportEvent)),
      window(GTK_WINDOW(
          g_object_new(GTK_TYPE_WINDOW, "accessible-role",
                       show.field ? GTK_ACCESSIBLE_ROLE_DIALOG : GTK_ACCESSIBLE_ROLE_ALERT_DIALOG, "modal",
                       TRUE, "resizable", FALSE, "title", shortened(show.title).c_str(), nullptr))) {
  addContent(show);
  describeForScreenReaders(show);
  g_signal_connect(window, "close-request", G_CALLBACK(+[](GtkWindow*, DialogWindow* self) -> gboolean {
                     self->report(EventKind::close);
                     return TRUE;
                   }),
                   this);
  g_signal_connect(window, "map",
                   G_CALLBACK(+[](GtkWindow*, DialogWindow* self) { self->report(EventKind::shown); }), this);
  open(show);
}

DialogWindow::~DialogWindow() { gtk_window_destroy(window); }

void DialogWindow::apply(const Change& change) {
  if (field) field->edit(change);
  if (!change.comesToFront) return;
  takeFocusWith(window, change.activationToken);
  comeToFront(window);
  report(EventKind::shown);
}

void DialogWindow::addContent(const Show& show) {
  auto* row = makeBox(GTK_ORIENTATION_HORIZONTAL, gap);
  setMargins(row, margin, margin, 0);
  if (const auto name = show.icon ? nameInTheme(show.icon->names) : std::nullopt)
    gtk_box_append(GTK_BOX(row), makeIcon(*show.icon, *name));
  gtk_box_append(GTK_BOX(row), makeColumn(show));
  auto* content = makeBox(GTK_ORIENTATION_VERTICAL, 0);
  gtk_box_append(GTK_BOX(content), row);
  gtk_box_append(GTK_BOX(content), makeButtons(show.buttons));
  // Without a title bar, so the window is moved by any place that is not for something else.
  auto* handle = gtk_window_handle_new();
  gtk_window_handle_set_child(GTK_WINDOW_HANDLE(handle), content);
  gtk_window_set_child(window, handle);
  auto* noTitleBar = makeBox(GTK_ORIENTATION_HORIZONTAL, 0);
  gtk_widget_hide(noTitleBar);
  gtk_window_set_titlebar(window, noTitleBar);
}

GtkWidget* DialogWindow::makeColumn(const Show& show) {
  auto* texts = makeBox(GTK_ORIENTATION_VERTICAL, smallGap);
  heading = makeHeading(show.title);
  gtk_box_append(GTK_BOX(texts), heading);
  details = makeLabel(show.text, plainAttributes());
  gtk_widget_set_visible(details, show.text.empty() ? FALSE : TRUE);
  gtk_box_append(GTK_BOX(texts), details);
  auto* column = makeBox(GTK_ORIENTATION_VERTICAL, gap);
  gtk_widget_set_hexpand(column, TRUE);
  auto* scroller = makeScroller(texts);
  // A stop for the keyboard only where there may be something to scroll.
  gtk_widget_set_focusable(scroller, show.field ? FALSE : TRUE);
  gtk_box_append(GTK_BOX(column), scroller);
  if (show.field) gtk_box_append(GTK_BOX(column), makeField(*show.field));
  return column;
}

GtkWidget* DialogWindow::makeField(const FieldSpec& spec) {
  field.emplace(spec);
  g_signal_connect(field->entry(), "activate",
                   G_CALLBACK(+[](GtkEntry*, DialogWindow* self) { self->report(EventKind::field); }), this);
  return field->widget();
}

GtkWidget* DialogWindow::makeButtons(const std::vector<ButtonSpec>& specs) {
  auto* row = makeBox(GTK_ORIENTATION_HORIZONTAL, smallGap);
  setMargins(row, margin, margin, margin);
  gtk_widget_set_halign(row, GTK_ALIGN_END);
  gtk_box_set_homogeneous(GTK_BOX(row), TRUE);
  // The most important one stands at the end, where the eye and the pointer go last.
  for (const auto& spec : specs) gtk_box_prepend(GTK_BOX(row), makeButton(spec));
  const bool isEscapeTaken =
      std::any_of(specs.begin(), specs.end(), [](const auto& spec) { return spec.key == ButtonKey::escape; });
  if (!isEscapeTaken) closeOnEscape();
  if (specs.size() > 1) gtk_widget_add_css_class(buttons.front(), "suggested-action");
  return row;
}

GtkWidget* DialogWindow::makeButton(const ButtonSpec& spec) {
  auto* button = gtk_button_new_with_label(spec.title.c_str());
  gtk_widget_set_size_request(button, buttonWidth, -1);
  const auto index = buttons.size();
  buttons.push_back(button);
  g_signal_connect(button, "clicked", G_CALLBACK(+[](GtkButton* clicked, DialogWindow* self) {
                     self->report(EventKind::button, self->indexOf(clicked));
                   }),
                   this);
  if (spec.key == ButtonKey::enter) gtk_window_set_default_widget(window, button);
  if (spec.key == ButtonKey::escape) pressOnEscape(index);
  return button;
}

void DialogWindow::describeForScreenReaders(const Show& show) {
  // The window's own name is its title.
  gtk_accessible_update_relation(GTK_ACCESSIBLE(window), GTK_ACCESSIBLE_RELATION_DESCRIBED_BY, details,
                                 nullptr, -1);
  if (!field) return;
  auto* name = show.text.empty() ? heading : details;
  gtk_accessible_update_relation(GTK_ACCESSIBLE(field->entry()), GTK_ACCESSIBLE_RELATION_LABELLED_BY, name,
                                 nullptr, -1);
}

void DialogWindow::closeOnEscape() {
  addShortcut(
      GDK_KEY_Escape,
      [](GtkWidget* widget, GVariant*, void*) -> gboolean {
        gtk_window_close(GTK_WINDOW(widget));
        return TRUE;
      },
      nullptr);
}

void DialogWindow::pressOnEscape(std::size_t index) {
  addShortcut(
      GDK_KEY_Escape,
      [](GtkWidget*, GVariant*, void* button) -> gboolean {
        g_signal_emit_by_name(button, "clicked");
        return TRUE;
      },
      buttons[index]);
}

/// Performed when nothing that has the keyboard (an input method, say) wants the key for itself.
void DialogWindow::addShortcut(guint key, GtkShortcutFunc perform, void* data) {
  auto* controller = gtk_shortcut_controller_new();
  gtk_shortcut_controller_add_shortcut(GTK_SHORTCUT_CONTROLLER(controller),
                                       gtk_shortcut_new(gtk_keyval_trigger_new(key, GdkModifierType{}),
                                                        gtk_callback_action_new(perform, data, nullptr)));
  gtk_widget_add_controller(GTK_WIDGET(window), controller);
}

void DialogWindow::open(const Show& show) {
  // A text that can be selected would take the keyboard otherwise.
  auto* first = field ? GTK_WIDGET(field->entry()) : gtk_window_get_default_widget(window);
  if (first != nullptr) gtk_widget_grab_focus(first);
  takeFocusWith(window, show.activationToken);
  gtk_widget_realize(GTK_WIDGET(window));
  setWindowHints(window, show.isAccessory ? Listing::leftOut : Listing::asUsual);
  const bool hasParent = setTransientFor(window, show.parentWindow);
  if (show.isCentered && !hasParent) centerOnScreen(window);
  gtk_window_present(window);
  if (show.isFloating) stayAbove(window);
  if (show.isLate) keepFocus();
}

void DialogWindow::keepFocus() {
  g_signal_connect(window, "notify::is-active",
                   G_CALLBACK(+[](GtkWindow*, GParamSpec*, DialogWindow* self) { self->followFocus(); }),
                   this);
  comeToFront(window);
}

void DialogWindow::followFocus() {
  const auto now = g_get_monotonic_time();
  const bool isActive = gtk_window_is_active(window) != FALSE;
  if (isActive && focusIsKeptUntil == 0) focusIsKeptUntil = now + keepingTime;
  if (!isActive && now < focusIsKeptUntil) comeToFront(window);
}

void DialogWindow::report(EventKind kind, std::size_t button) {
  Event event{kind, button, field ? field->text() : "", ""};
  if (kind != EventKind::shown) event.activationToken = activationTokenFrom(window);
  listener(event);
}

std::size_t DialogWindow::indexOf(const void* button) const {
  return static_cast<std::size_t>(std::find(buttons.begin(), buttons.end(), button) - buttons.begin());
}

}  // namespace sprig::dialog

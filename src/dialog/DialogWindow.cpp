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
constexpr int tallestTexts = 280;
constexpr int buttonWidth = 90;
/// Characters of an average line; longer ones wrap.
constexpr int lineLength = 52;
constexpr double headingScale = 1.15;

GtkWidget* makeBox(GtkOrientation orientation, int spacing) { return gtk_box_new(orientation, spacing); }

void setMargins(GtkWidget* widget, int top, int sides, int bottom) {
  gtk_widget_set_margin_top(widget, top);
  gtk_widget_set_margin_start(widget, sides);
  gtk_widget_set_margin_end(widget, sides);
  gtk_widget_set_margin_bottom(widget, bottom);
}

/// Text that wraps and can be selected and copied.
GtkWidget* makeLabel(const std::string& text) {
  auto* widget = gtk_label_new(text.c_str());
  auto* label = GTK_LABEL(widget);
  gtk_label_set_selectable(label, TRUE);
  gtk_label_set_wrap(label, TRUE);
  gtk_label_set_wrap_mode(label, PANGO_WRAP_WORD_CHAR);
  gtk_label_set_max_width_chars(label, lineLength);
  gtk_label_set_xalign(label, 0);
  gtk_widget_set_halign(widget, GTK_ALIGN_FILL);
  return widget;
}

GtkWidget* makeHeading(const std::string& text) {
  auto* label = makeLabel(text);
  const std::unique_ptr<PangoAttrList, wire::Releaser<pango_attr_list_unref>> attributes(
      pango_attr_list_new());
  pango_attr_list_insert(attributes.get(), pango_attr_weight_new(PANGO_WEIGHT_BOLD));
  pango_attr_list_insert(attributes.get(), pango_attr_scale_new(headingScale));
  gtk_label_set_attributes(GTK_LABEL(label), attributes.get());
  return label;
}

/// The first of the names that there is an icon for; the last one when there is none. Asked for all of them
/// at once, GTK prefers the desktop's theme, so a stand-in that it has would win over an icon that comes with
/// us.
std::string nameInTheme(const std::vector<std::string>& names) {
  auto* theme = gtk_icon_theme_get_for_display(gdk_display_get_default());
  const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
    return gtk_icon_theme_has_icon(theme, name.c_str()) != FALSE;
  });
  if (found != names.end()) return *found;
  return names.empty() ? "" : names.back();
}

GtkWidget* makeIcon(const IconLook& look) {
  const auto role = look.description.empty() ? GTK_ACCESSIBLE_ROLE_PRESENTATION : GTK_ACCESSIBLE_ROLE_IMG;
  auto* image = GTK_WIDGET(g_object_new(GTK_TYPE_IMAGE, "accessible-role", role, "icon-name",
                                        nameInTheme(look.names).c_str(), "pixel-size", look.size, nullptr));
  gtk_widget_set_valign(image, GTK_ALIGN_START);
  gtk_accessible_update_property(GTK_ACCESSIBLE(image), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                 look.description.c_str(), -1);
  return image;
}

/// As tall as what it holds up to a limit; beyond it scrolls.
GtkWidget* makeScroller(GtkWidget* content) {
  auto* widget = gtk_scrolled_window_new();
  auto* scroller = GTK_SCROLLED_WINDOW(widget);
  gtk_scrolled_window_set_policy(scroller, GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_propagate_natural_width(scroller, TRUE);
  gtk_scrolled_window_set_propagate_natural_height(scroller, TRUE);
  gtk_scrolled_window_set_max_content_height(scroller, tallestTexts);
  // A bar that only shows itself under the pointer would not tell that there is more to read.
  gtk_scrolled_window_set_overlay_scrolling(scroller, FALSE);
  gtk_scrolled_window_set_child(scroller, content);
  return widget;
}

/// How many characters of `text` the first `units` UTF-16 code units hold.
int characters(const char* text, std::size_t units) {
  int count = 0;
  std::size_t passed = 0;
  for (; *text != '\0' && passed < units; text = g_utf8_next_char(text)) {
    passed += g_utf8_get_char(text) > 0xFFFF ? 2 : 1;
    ++count;
  }
  return count;
}

/// Changes text and selection so that a selection is there all the time, if there are one before and one
/// afterwards: an empty one gives up X11's primary selection, and the news of that can arrive when the next
/// one has claimed it, and take that away.
void edit(GtkEditable* editable, const Change& change) {
  const int oldLength =
      change.text ? static_cast<int>(g_utf8_strlen(gtk_editable_get_text(editable), -1)) : 0;
  int end = oldLength;
  if (change.text) gtk_editable_insert_text(editable, change.text->c_str(), -1, &end);
  if (change.selection) {
    const wire::TextPointer text(gtk_editable_get_chars(editable, oldLength, -1));
    const auto& [location, length] = *change.selection;
    gtk_widget_grab_focus(GTK_WIDGET(editable));
    gtk_editable_select_region(editable, oldLength + characters(text.get(), location),
                               oldLength + characters(text.get(), location + length));
  }
  gtk_editable_delete_text(editable, 0, oldLength);
}

}  // namespace

DialogWindow::DialogWindow(const Show& show, Report reportEvent)
    : listener(std::move(reportEvent)),
      window(
          GTK_WINDOW(g_object_new(GTK_TYPE_WINDOW, "accessible-role",
                                  show.field ? GTK_ACCESSIBLE_ROLE_DIALOG : GTK_ACCESSIBLE_ROLE_ALERT_DIALOG,
                                  "modal", TRUE, "resizable", FALSE, "title", show.title.c_str(), nullptr))) {
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
  if (entry != nullptr) edit(GTK_EDITABLE(entry), change);
  if (change.comesToFront) {
    takeFocusWith(window, change.activationToken);
    gtk_window_present(window);
  }
}

void DialogWindow::addContent(const Show& show) {
  auto* row = makeBox(GTK_ORIENTATION_HORIZONTAL, gap);
  setMargins(row, margin, margin, 0);
  if (show.icon) gtk_box_append(GTK_BOX(row), makeIcon(*show.icon));
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
  details = makeLabel(show.text);
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

GtkWidget* DialogWindow::makeField(const FieldLook& look) {
  auto* widget = gtk_entry_new();
  entry = GTK_ENTRY(widget);
  gtk_widget_set_size_request(widget, look.width, -1);
  gtk_editable_set_text(GTK_EDITABLE(entry), look.text.c_str());
  g_signal_connect(entry, "activate",
                   G_CALLBACK(+[](GtkEntry*, DialogWindow* self) { self->report(EventKind::field); }), this);
  return widget;
}

GtkWidget* DialogWindow::makeButtons(const std::vector<ButtonLook>& looks) {
  auto* row = makeBox(GTK_ORIENTATION_HORIZONTAL, smallGap);
  setMargins(row, margin, margin, margin);
  gtk_widget_set_halign(row, GTK_ALIGN_END);
  gtk_box_set_homogeneous(GTK_BOX(row), TRUE);
  // The most important one stands at the end, where the eye and the pointer go last.
  for (const auto& look : looks) gtk_box_prepend(GTK_BOX(row), makeButton(look));
  const bool isEscapeTaken =
      std::any_of(looks.begin(), looks.end(), [](const auto& look) { return look.key == ButtonKey::escape; });
  if (!isEscapeTaken) closeOnEscape();
  if (looks.size() > 1) gtk_widget_add_css_class(buttons.front(), "suggested-action");
  return row;
}

GtkWidget* DialogWindow::makeButton(const ButtonLook& look) {
  auto* button = gtk_button_new_with_label(look.title.c_str());
  gtk_widget_set_size_request(button, buttonWidth, -1);
  const auto index = buttons.size();
  buttons.push_back(button);
  g_signal_connect(button, "clicked", G_CALLBACK(+[](GtkButton* clicked, DialogWindow* self) {
                     self->report(EventKind::button, self->indexOf(clicked));
                   }),
                   this);
  if (look.key == ButtonKey::enter) gtk_window_set_default_widget(window, button);
  if (look.key == ButtonKey::escape) pressOnEscape(index);
  return button;
}

void DialogWindow::describeForScreenReaders(const Show& show) {
  // The window's own name is its title.
  gtk_accessible_update_relation(GTK_ACCESSIBLE(window), GTK_ACCESSIBLE_RELATION_DESCRIBED_BY, details,
                                 nullptr, -1);
  if (entry == nullptr) return;
  auto* name = show.text.empty() ? heading : details;
  gtk_accessible_update_relation(GTK_ACCESSIBLE(entry), GTK_ACCESSIBLE_RELATION_LABELLED_BY, name, nullptr,
                                 -1);
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
  auto* first = entry != nullptr ? GTK_WIDGET(entry) : gtk_window_get_default_widget(window);
  if (first != nullptr) gtk_widget_grab_focus(first);
  takeFocusWith(window, show.activationToken);
  gtk_widget_realize(GTK_WIDGET(window));
  belongTo(window, show.parentWindow);
  gtk_window_present(window);
  if (show.isFloating) stayAbove(window);
}

void DialogWindow::report(EventKind kind, std::size_t button) {
  listener({kind, button, entry == nullptr ? "" : gtk_editable_get_text(GTK_EDITABLE(entry))});
}

std::size_t DialogWindow::indexOf(const void* button) const {
  return static_cast<std::size_t>(std::find(buttons.begin(), buttons.end(), button) - buttons.begin());
}

}  // namespace sprig::dialog

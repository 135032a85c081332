// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

/// What the pages of the settings window are built of.
///
/// Threads:   main thread, after GTK was initialised.
/// Ownership: widgets belong to what they are put into; functions that are given live as long as the object
/// that
///            calls them.
namespace sprig::settings {

// Pixels, before the desktop's scale.
inline constexpr int gap = 12;
inline constexpr int smallGap = 6;
inline constexpr int pageMargin = 24;
inline constexpr int columnWidth = 600;

/// Has a function called on an object's signal, whatever the signal's arguments are. `connectDeciding` is for
/// those whose handlers return whether they have dealt with it.
void connect(gpointer object, const char* signal, std::function<void()> handler);
void connectDeciding(gpointer object, const char* signal, std::function<bool()> handler);

/// Has a function called on a key like "<Control>n", when nothing that has the keyboard wants it for itself;
/// it returns whether it has dealt with the key.
enum class ShortcutScope { widget, window };
void addShortcut(GtkWidget* widget, const char* keys, std::function<bool()> perform,
                 ShortcutScope scope = ShortcutScope::widget);

GtkWidget* makeBox(GtkOrientation orientation, int spacing);
void setMargins(GtkWidget* widget, int vertical, int horizontal);
/// A line of text, from the start on; one that wraps.
GtkWidget* makeLabel(const std::string& text);
GtkWidget* makeText(const std::string& text);
GtkWidget* makeIconButton(const char* iconName, const std::string& name);
/// A picture that says nothing that isn't said beside it.
GtkWidget* makeDecoration(const char* iconName);
/// What a screen reader calls something that has no text of its own.
void setAccessibleName(GtkWidget* widget, const std::string& name);
void setAccessibleDescription(GtkWidget* widget, const std::string& description);
/// Has screen readers pass over the pages of a stack that are not shown, which GTK 4.8 doesn't do by itself.
void hideOtherPages(GtkStack* stack);
/// Makes `label` the name of `widget`, for screen readers and for access keys.
void labelWidget(GtkWidget* label, GtkWidget* widget);

/// A page's content: a column in the middle of the window, which scrolls.
GtkWidget* makeScrolledColumn(GtkWidget* column);
/// A frame around rows, and a row in it: a name, a sentence about it (empty for none) and what is set.
GtkWidget* makeCard();
GtkWidget* addCardRow(GtkWidget* card, const std::string& name, const std::string& description,
                      GtkWidget* control);

/// A view of a text in which all letters have one width, with its name for screen readers; the Tab key goes
/// on to the next widget. And a frame around it that scrolls, at least that high.
GtkWidget* makeTextView(const std::string& name);
GtkWidget* makeTextFrame(GtkWidget* view, int height);

/// The name in the icon theme under which a template's symbol can be drawn.
std::string drawableIcon(const std::string& symbol);

bool isVisible(GtkWidget* widget);
void setVisible(GtkWidget* widget, bool isVisible);
/// Gives a widget a class of the style, or takes it away.
void setStyle(GtkWidget* widget, const char* name, bool isOn);
/// What a view of a text shows; a text that is there already keeps its cursor.
std::string textIn(GtkTextBuffer* buffer);
void setTextIn(GtkWidget* view, const std::string& text);

/// Colours and spaces that themes don't have.
void addStyle();

}  // namespace sprig::settings

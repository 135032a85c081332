// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <string>
#include <vector>

namespace sprig::filemanagers {

/// Whether an object is of a type, known by its name, which may be one that this process has not.
bool isNamed(void* object, const char* typeName);

/// Whether an object has a property of a kind of value. What is unknown of it is not used.
bool hasProperty(void* object, const char* name, GType valueType);

/// The windows on the screen in which a click may have been: that of an X11 handle, or else all of them, the
/// active one first.
std::vector<GtkWidget*> windowsOf(const std::string& parentWindow);

/// All widgets of a window that are on the screen, those around the keyboard's focus first: of two panes, the
/// one in which the user works.
std::vector<GtkWidget*> widgetsOn(GtkWidget* window);

}  // namespace sprig::filemanagers

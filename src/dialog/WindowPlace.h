#pragma once

#include <gtk/gtk.h>

#include <string>

namespace sprig::dialog {

/// Has a window get the focus when it is presented next, by the token of the click that asked for it; empty
/// for none.
void takeFocusWith(GtkWindow* window, const std::string& activationToken);

/// Makes a window belong to one of another program, "x11:<hexadecimal id>" or "wayland:<exported handle>", so
/// that it stays in front of it. One that is of the other display system or malformed is ignored. Requires:
/// realized, not mapped yet.
void belongTo(GtkWindow* window, const std::string& parentWindow);

/// Asks the window manager to keep a window above ordinary ones. Wayland has no such wish. Requires: mapped.
void stayAbove(GtkWindow* window);

}  // namespace sprig::dialog

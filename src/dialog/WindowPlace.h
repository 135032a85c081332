// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <string>

namespace sprig::dialog {

/// Whether a window shows where the desktop lists windows: its taskbar, its pager.
enum class Listing { asUsual, leftOut };

/// Has a window get the focus when it is presented next, by the token of the click that asked for it; empty
/// for none.
void takeFocusWith(GtkWindow* window, const std::string& activationToken);

/// Raises a window that is on the screen and gives it the focus, whatever the user did last. On Wayland, that
/// takes a token.
void comeToFront(GtkWindow* window);

/// A token that lets a window of another process take the focus because of what the user has just done in
/// this one; empty for none.
std::string activationTokenFrom(GtkWindow* window);

/// Tells the window manager that a window is a dialog, and how to list it. Wayland has no such hints.
/// Requires: realized, not mapped yet.
void setWindowHints(GtkWindow* window, Listing listing);

/// Makes a window belong to one of another program, "x11:<hexadecimal id>" or "wayland:<exported handle>", so
/// that it stays in front of it. False when that is of the other display system or malformed. Requires:
/// realized, not mapped yet.
bool setTransientFor(GtkWindow* window, const std::string& parentWindow);

/// Moves a window to the middle of the monitor with the active window, else of the one with the pointer. On
/// Wayland, that is up to the compositor. Requires: realized.
void centerOnScreen(GtkWindow* window);

/// Asks the window manager to keep a window above ordinary ones. Wayland has no such wish. Requires: mapped.
void stayAbove(GtkWindow* window);

}  // namespace sprig::dialog

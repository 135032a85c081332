// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

class QString;
class QUrl;

namespace sprig::filemanagers {

/// Selects a new file in the window that was clicked in, as Dolphin does with a file that it has created
/// itself: scrolled to, and with the keyboard's focus. Only in the view with which the user works, and only
/// if that shows the file's folder; no other one is touched.
///
/// `parentWindow` is the window as `ClickOrigin` names it; empty for the active window, or the only one that
/// shows the folder. Calls `answer` once, with whether the file is selected: at once, or when the view has
/// noticed the file, or at last after a second and a half.
///
/// Threads: main thread. Relies on nothing of Dolphin's insides but what it finds there by name.
void selectInWindow(const QUrl& file, const QString& parentWindow, std::function<void(bool)> answer);

}  // namespace sprig::filemanagers

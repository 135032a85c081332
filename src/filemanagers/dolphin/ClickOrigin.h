// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

#include "filemanagers/client/ClickOrigin.h"

class QWidget;

namespace sprig::filemanagers {

/// Finds out from where a click comes that picks an item, and goes on with that: at once, or under Wayland
/// when the compositor has given a token for it. `widget` stands in the window that the menu was shown for,
/// and may be null. Threads: main thread.
void withClickOrigin(QWidget* widget, std::function<void(const ClickOrigin&)> goOn);

}  // namespace sprig::filemanagers

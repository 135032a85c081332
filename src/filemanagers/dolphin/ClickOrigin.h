#pragma once

#include <functional>

#include "filemanagers/client/ClickOrigin.h"

class QWidget;

namespace sprig::filemanagers {

/// Tells, when an item is picked, of the window of a widget that a menu was shown for. `widget` may be null,
/// and may be gone by then. Threads: main thread.
std::function<ClickOrigin()> clickOriginIn(QWidget* widget);

}  // namespace sprig::filemanagers

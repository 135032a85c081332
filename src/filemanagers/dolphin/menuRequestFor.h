// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "filemanagers/client/ExtensionClient.h"

class KFileItemListProperties;
class QWidget;

namespace sprig::filemanagers {

/// What Dolphin asks for a menu for: the first items of a selection, or the folder that `window` shows. Of
/// what is not on this computer there are no targets, nor is anything asked of a selection that begins with
/// it. `window` may be null. Threads: main thread.
MenuRequest menuRequestFor(const KFileItemListProperties& selection, QWidget* window);

}  // namespace sprig::filemanagers

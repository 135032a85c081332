// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "filemanagers/client/ExtensionClient.h"

namespace sprig::filemanagers {

/// Tells the extension of a pick, without waiting for what comes of it. It goes out over Dolphin's own
/// connection to the bus, as the extension asks the sender to show the new file. Failure: one line in the
/// log.
void sendPick(const PickedEntry& entry, const MenuRequest& request, const ClickOrigin& origin);

}  // namespace sprig::filemanagers

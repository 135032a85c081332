// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <string>

#include "filemanagers/client/ExtensionClient.h"

namespace sprig::filemanagers {

/// Opens a menu of our own at the pointer, for a file manager that can only draw a button. Does nothing where
/// there is no menu. Threads: main thread.
void popUpMenu(const std::shared_ptr<ExtensionClient>& client, const MenuRequest& request);

}  // namespace sprig::filemanagers

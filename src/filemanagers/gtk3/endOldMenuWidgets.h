// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace sprig::filemanagers {

/// Has the widgets go that belong to items which the file manager has just taken out of its menus, before it
/// puts them together again. It would come upon those with the names of new ones, use them again, and connect
/// more handlers to each, which stay as long as the widget. To be called when it asks `provider`, a GObject,
/// for items; does nothing while one is picked.
///
/// For file managers with a GtkUIManager. Threads: main thread.
void endOldMenuWidgets(void* provider);

}  // namespace sprig::filemanagers

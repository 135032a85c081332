// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace sprig::filemanagers {

/// Calls `call` with `object`, a GObject, once: right before the file manager deals with the next press of a
/// button, a finger or a key that may open a menu. Does nothing while such a call is still to come for the
/// object, which stays until then. An open menu is left alone.
///
/// For file managers that make much of a menu that nobody may ever look at. Threads: main thread.
void beforeNextMenu(void* object, void (*call)(void* object));

}  // namespace sprig::filemanagers

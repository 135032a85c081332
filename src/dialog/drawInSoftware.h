// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace sprig::dialog {

/// Has GTK draw our windows without a graphics processor, and not even look for one: that takes a third of
/// the time until a window is there, and a small still one gains nothing from it. What the user's environment
/// says about either holds.
///
/// Requires: called before GTK is initialised, while no other thread runs.
void drawInSoftware();

}  // namespace sprig::dialog

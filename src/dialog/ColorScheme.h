// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace sprig::dialog {

/// Has windows drawn dark for as long as the desktop's setting prefers dark ones. GTK 4 itself looks at the
/// theme only, and GNOME leaves that as it is. Requires: GTK was initialised.
void followColorScheme();

}  // namespace sprig::dialog

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace sprig::desktop {

/// Whether the file of the running program has been removed, or another one has taken its place, as in an
/// upgrade. Threads: any; touches one file.
bool isProgramFileGone();

}  // namespace sprig::desktop

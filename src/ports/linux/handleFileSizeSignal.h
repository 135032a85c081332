// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace sprig::ports {

/// Has writing beyond the process's limit on file sizes (`ulimit -f`) fail with `EFBIG`, as other writing
/// fails, instead of ending the program. Programs that this one starts have the system's way again.
///
/// Threads: for the whole process; before there are others.
void handleFileSizeSignal();

}  // namespace sprig::ports

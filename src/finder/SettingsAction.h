// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace sprig {

/// Opens the settings with whatever program handles their URL. Without one, nothing happens but the log line.
///
/// Threads: main thread; does not wait for the other program.
void performOpenSettingsAction();

}  // namespace sprig

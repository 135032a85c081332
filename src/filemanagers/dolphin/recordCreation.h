// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QUrl;

namespace sprig::filemanagers {

/// Makes the creation of a local file the next thing that KDE's programs undo; false when there is no such
/// file. Threads: main thread.
bool recordCreation(const QUrl& file);

}  // namespace sprig::filemanagers

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <set>

#include "platform/FileURL.h"

namespace sprig {

/// The folders to serve: the home folder, and the mounted volumes but the startup disk. `known` is what was
/// served until now: volumes in it are taken without another look at them, which a dead network share would
/// make a long one, and all of them when it can't be found out what is mounted.
///
/// Threads: any.
std::set<platform::FileURL> servedFolders(const std::set<platform::FileURL>& known = {});

}  // namespace sprig

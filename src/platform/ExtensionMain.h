// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "platform/FIFinderSync.h"

namespace sprig::platform {

/// Makes the one object of an extension that the file manager talks to.
using PrincipalClass = std::unique_ptr<FIFinderSync> (*)();

/// Runs the extension: sets up the port's platform, makes one principal object, and serves the file manager
/// until it is no longer needed. Each port for file managers defines it.
///
/// Threads:   called once, on the main thread, from `main`.
/// Ownership: the object is this call's, and goes before the platform does.
/// Failure:   the exit status, after a line in the system log or on standard error; 0 when all went well.
int ExtensionMain(int argumentCount, char** arguments, PrincipalClass principalClass);

}  // namespace sprig::platform

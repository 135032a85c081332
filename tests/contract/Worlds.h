// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "platform/FileChangeSource.h"
#include "platform/FileSystem.h"

namespace sprig::test {

// What the contract suites know of a port: each test program links the suites with one definition of these.

std::unique_ptr<platform::FileSystem> makeFileSystem();
/// To destroy the result ends all calls, after the last calls that are due.
std::unique_ptr<platform::FileChangeSources> makeFileChangeSources();

}  // namespace sprig::test

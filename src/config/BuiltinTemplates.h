// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "config/AppConfigItem.h"

namespace sprig {

/// The configuration in force while there is no usable document: the eleven built-in templates and the
/// default settings. Built anew on each call.
///
/// Threads: any.
AppConfigItem defaultFallbackConfig();

}  // namespace sprig

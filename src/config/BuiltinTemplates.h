// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>

#include "config/AppConfigItem.h"

namespace sprig {

/// The configuration in force while there is no usable document: the eleven built-in templates and the
/// default settings. Built anew on each call.
///
/// Threads: any.
AppConfigItem defaultFallbackConfig();

/// What users read as a template's name in menus and windows: that of a built-in one, which its id tells, in
/// their language, unless it was renamed. The name itself is what is written, looked up and typed.
std::string displayName(const std::string& id, const std::string& name);

}  // namespace sprig

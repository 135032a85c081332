// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "config/ConfigManager.h"
#include "finder/MenuState.h"
#include "platform/FileURL.h"
#include "platform/Menu.h"

namespace sprig {

/// The template that a picked entry stands for: by identifier, then by title, each among the templates that
/// menus have offered and then among the configuration's. Null when there is none. Whether a template is
/// enabled makes no difference.
TemplateReference findTemplate(const platform::MenuItem& sender, const MenuState& state,
                               const ConfigSnapshot& config);

/// Creates a file from the template that `sender` stands for, asking for its name first when the template or
/// the settings say so. Returns the file; nothing when none was created, for which the log has the reason.
///
/// `typedName` is a name the user has given already, in place of the question; absent, the question is asked.
///
/// Threads: main thread; blocks while the user is asked and the file is written.
std::optional<platform::FileURL> performTemplateAction(const platform::MenuItem& sender,
                                                       const MenuState& state,
                                                       const std::optional<std::string>& typedName = {});

}  // namespace sprig

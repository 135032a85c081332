// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>
#include <vector>

#include "settings/TemplatePreview.h"

namespace sprig::settings {

/// A button with a menu of placeholders; the function inserts the token that was chosen.
///
/// Threads: main thread.
GtkWidget* makePlaceholderButton(const std::vector<Placeholder>& placeholders,
                                 std::function<void(const std::string& token)> insert);

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#include <glib.h>

#include <csignal>

#include "ports/linux/handleFileSizeSignal.h"
#include "settings/window/SettingsApplication.h"

namespace {

/// GTK looks at the older variable only.
void takeActivationToken() {
  const char* token = g_getenv("XDG_ACTIVATION_TOKEN");
  if (token != nullptr) g_setenv("DESKTOP_STARTUP_ID", token, FALSE);
  g_unsetenv("XDG_ACTIVATION_TOKEN");
}

}  // namespace

int main(int argc, char** argv) {
  sprig::ports::handleFileSizeSignal();
  takeActivationToken();
  // Without a graphics processor this starts twice as fast, and a still window gains nothing from one.
  g_setenv("GSK_RENDERER", "cairo", FALSE);
  // What window managers and compositors know our windows by, and what people are told.
  g_set_prgname("com.kestrel.Sprig");
  g_set_application_name("Sprig");
  return sprig::settings::SettingsApplication().run(argc, argv);
}

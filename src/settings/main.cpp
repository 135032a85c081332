// SPDX-License-Identifier: GPL-3.0-or-later

#include <glib.h>

#include <string>

#include "dialog/drawInSoftware.h"
#include "ports/linux/handleFileSizeSignal.h"
#include "settings/window/SettingsApplication.h"
#include "version/answerVersion.h"

namespace {

/// That of the newer variable, as GTK looks at the older one only.
std::string takeActivationToken() {
  const char* value = g_getenv("XDG_ACTIVATION_TOKEN");
  std::string token = value == nullptr ? "" : value;
  g_unsetenv("XDG_ACTIVATION_TOKEN");
  return token;
}

}  // namespace

int main(int argc, char** argv) {
  if (sprig::answerVersion("sprig-settings", argc, argv)) return 0;
  sprig::ports::handleFileSizeSignal();
  const auto token = takeActivationToken();
  sprig::dialog::drawInSoftware();
  // What window managers and compositors know our windows by, and what people are told.
  g_set_prgname("com.kestrel.Sprig");
  g_set_application_name("Sprig");
  return sprig::settings::SettingsApplication(token).run(argc, argv);
}

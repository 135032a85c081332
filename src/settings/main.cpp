// SPDX-License-Identifier: GPL-3.0-or-later

#include <glib.h>

#include <fstream>
#include <string>

#include "dialog/drawInSoftware.h"
#include "ports/linux/handleFileSizeSignal.h"
#include "settings/window/SettingsApplication.h"
#include "version/answerVersion.h"

namespace {

/// As the program was started with it: newer releases of GTK take what they know out of the environment
/// before `main`. Empty where there is none.
std::string initialVariable(const std::string& name) {
  std::ifstream environment("/proc/self/environ");
  for (std::string entry; std::getline(environment, entry, '\0');) {
    if (entry.starts_with(name + "=")) return entry.substr(name.size() + 1);
  }
  return {};
}

/// Of whoever has started this; no program that this starts is to use it again.
std::string takeActivationToken() {
  std::string token;
  for (const auto* variable : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
    if (token.empty()) token = initialVariable(variable);
    g_unsetenv(variable);
  }
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

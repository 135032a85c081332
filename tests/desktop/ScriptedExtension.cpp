// SPDX-License-Identifier: GPL-3.0-or-later

// sprig-scripted-extension: the extension with a user who answers by signals (SIGUSR1 confirms, SIGUSR2
// cancels), and that stays for as many milliseconds after its last client as SPRIG_IDLE_TIME says. Standard
// output tells what the user sees.

#include <glib-unix.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>

#include "app/FinderSync.h"
#include "ports/desktop/DesktopPlatform.h"
#include "ports/desktop/ExtensionService.h"
#include "ports/linux/LinuxSystemLog.h"

namespace sprig::desktop {
namespace {

void tell(const std::string& what, const std::string& text = {}) {
  std::fprintf(stderr, "%s %s\n", what.c_str(), text.c_str());
}

class ScriptedUser final : public platform::Application {
 public:
  void setClick(const Click& newClick) { click = newClick; }

  void setActivationPolicy(platform::ActivationPolicy) override {}
  void activate() override {}
  void activateIgnoringOtherApps() override {}

  int runModal(platform::Alert& alert) override {
    tell("shows", alert.messageText + "|" + click.activationToken + "|" + click.parentWindow);
    const guint confirms = g_unix_signal_add(SIGUSR1, press, &alert.buttons.front());
    const guint cancels = g_unix_signal_add(SIGUSR2, press, &alert.buttons.back());
    code.reset();
    while (!code) g_main_context_iteration(nullptr, TRUE);
    g_source_remove(confirms);
    g_source_remove(cancels);
    return *code;
  }

  void stopModal(int newCode) override { code = newCode; }

 private:
  static gboolean press(void* pressed) {
    const auto& button = *static_cast<platform::Button*>(pressed);
    if (button.target != nullptr) {
      button.target->performAction(button.action);
    } else {
      platform::current().application.stopModal(button.tag);
    }
    return G_SOURCE_CONTINUE;
  }

  Click click;
  std::optional<int> code;
};

int run() {
  GError* error = nullptr;
  const wire::ObjectPointer<GDBusConnection> connection(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error));
  if (!connection) return 1;
  ports::LinuxSystemLog systemLog("sprig-extension", ports::SystemLogFallback::standardError, "/nowhere");
  ScriptedUser user;
  DesktopPlatform platform(*connection, systemLog, user);
  FinderSync extension;
  const char* idleTime = std::getenv("SPRIG_IDLE_TIME");
  const ServiceDependencies dependencies{*connection, platform.queue(), platform.finderSyncController(),
                                         [&](const Click& click) {
                                           user.setClick(click);
                                           platform.setClick(click);
                                         },
                                         [](const std::string& token) { tell("comes to the front", token); }};
  const std::chrono::milliseconds idle(idleTime != nullptr ? std::atoi(idleTime) : 60000);
  ExtensionService service(dependencies, extension, {.idle = idle, .look = std::chrono::milliseconds(500)});
  platform.whenConfigurationChanges([&] { service.announceMenus(); });
  platform.whenServedFoldersChange([&] { service.announceServedFolders(); });
  service.run();
  return 0;
}

}  // namespace
}  // namespace sprig::desktop

int main() { return sprig::desktop::run(); }

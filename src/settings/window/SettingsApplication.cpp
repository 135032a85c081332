// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/SettingsApplication.h"

#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

#include "import/TemplateExchange.h"
#include "settings/SettingsURL.h"
#include "settings/window/Widgets.h"

namespace sprig::settings {

namespace {

/// The desktop entry and the service on the bus have the same name.
constexpr const char* applicationId = "com.kestrel.Sprig";

}  // namespace

SettingsApplication::SettingsApplication(std::string activationToken)
    : instance(applicationId, std::move(activationToken)),
      systemLog("sprig-settings", ports::SystemLogFallback::standardError),
      alerts(systemLog) {
  connect(instance.get(), "activate", [this] { showWindow(); });
  g_signal_connect(instance.get(), "open",
                   G_CALLBACK(+[](GApplication*, GFile** files, int count, const char*,
                                  SettingsApplication* self) { self->open(files, count); }),
                   this);
}

int SettingsApplication::run(int argc, char** argv) {
  GError* error = nullptr;
  const wire::ObjectPointer<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error));
  if (!bus) {
    const wire::ErrorPointer owned(error);
    systemLog.log(std::string("[SprigSettings] Can't connect to the session bus: ") + error->message);
    return EXIT_FAILURE;
  }
  // In the first instance only.
  connect(instance.get(), "startup", [this, &bus] { start(*bus); });
  return g_application_run(instance.get(), argc, argv);
}

void SettingsApplication::start(GDBusConnection& bus) {
  gtk_init();
  colorScheme.follow();
  addStyle();
  desktop.emplace(bus, systemLog, alerts);
  model.emplace();
  // Behind the first frame of the window, which needs none of it.
  g_idle_add_full(
      G_PRIORITY_LOW,
      [](void* self) -> gboolean {
        static_cast<SettingsApplication*>(self)->followConfiguration();
        return G_SOURCE_REMOVE;
      },
      this, nullptr);
}

void SettingsApplication::followConfiguration() {
  desktop->whenConfigurationChanges([this] { model->reload(); });
  // For what was changed meanwhile.
  model->reload();
}

void SettingsApplication::showWindow() {
  if (!window) {
    // The program ends when its only window has gone.
    g_application_hold(instance.get());
    window = std::make_shared<SettingsWindow>(*model, [this] { dropWindow(); });
  }
  window->present(instance.takeToken());
}

void SettingsApplication::dropWindow() {
  desktop->queue().async([this, closed = std::move(window)]() mutable {
    closed.reset();
    g_application_release(instance.get());
  });
}

void SettingsApplication::open(GFile** files, int count) {
  showWindow();
  std::vector<platform::FileURL> shared;
  for (int index = 0; index < count; ++index) {
    const wire::TextPointer uri(g_file_get_uri(files[index]));
    if (const auto target = parseSettingsURL(uri.get())) return window->show(*target);
    const wire::TextPointer path(g_file_get_path(files[index]));
    // Nothing else becomes a template without having been chosen in the window.
    if (path && std::string_view(path.get()).ends_with(sharedTemplatesSuffix))
      shared.emplace_back(path.get());
  }
  if (!shared.empty()) window->open(shared);
}

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ExtensionMain.h"

#include <malloc.h>

#include "ports/desktop/DesktopApplication.h"
#include "ports/desktop/DesktopPlatform.h"
#include "ports/desktop/ExtensionService.h"
#include "ports/linux/LinuxSystemLog.h"
#include "ports/linux/handleFileSizeSignal.h"
#include "version/answerVersion.h"

namespace sprig::platform {

namespace {

/// Has large blocks given back when they are freed. By default, after the first one was freed, others of its
/// size come to lie among small ones, which keep them.
///
/// Threads: before there are others.
void keepLargeBlocksApart() {
  constexpr int largeBytes = 128 * 1024;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): there are no other threads yet.
  static_cast<void>(::mallopt(M_MMAP_THRESHOLD, largeBytes));
}

}  // namespace

int ExtensionMain(int argumentCount, char** arguments, PrincipalClass principalClass) {
  using namespace sprig::desktop;
  if (answerVersion("sprig-extension", argumentCount, arguments)) return 0;
  keepLargeBlocksApart();
  ports::handleFileSizeSignal();
  ports::LinuxSystemLog systemLog("sprig-extension", ports::SystemLogFallback::standardError);
  GError* error = nullptr;
  const wire::ObjectPointer<GDBusConnection> connection(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error));
  if (!connection) {
    const wire::ErrorPointer owned(error);
    systemLog.log(std::string("[SprigFinder] Can't connect to the session bus: ") + error->message);
    return 1;
  }
  DesktopApplication application(systemLog);
  DesktopPlatform desktop(*connection, systemLog, application);
  const auto extension = principalClass();
  const ServiceDependencies dependencies{*connection, desktop.queue(), desktop.finderSyncController(),
                                         [&](const Click& click) {
                                           application.setClick(click);
                                           desktop.setClick(click);
                                         },
                                         [&](const std::string& token) { application.comeToFront(token); }};
  ExtensionService service(dependencies, *extension, {});
  desktop.whenConfigurationChanges([&] { service.announceMenus(); });
  desktop.whenServedFoldersChange([&] { service.announceServedFolders(); });
  service.run();
  return 0;
}

}  // namespace sprig::platform

// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/MountWatch.h"

#include <fcntl.h>
#include <glib-unix.h>

#include <utility>

namespace sprig::desktop {

MountWatch::MountWatch(std::function<void()> changed)
    : haveChanged(std::move(changed)), table(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {
  if (!table.isOpen()) return;
  // The kernel reports a change as an exceptional condition, to each that has the table open once.
  tableSource.reset(g_unix_fd_source_new(table.get(), GIOCondition(G_IO_PRI | G_IO_ERR)));
  g_source_set_callback(tableSource.get(), G_SOURCE_FUNC(tableChanged), this, nullptr);
  // The main loop drops what it has polled if a source of higher priority is ready as well, and the kernel
  // wouldn't report it again.
  g_source_set_priority(tableSource.get(), G_PRIORITY_HIGH);
  g_source_attach(tableSource.get(), nullptr);
}

MountWatch::~MountWatch() {
  if (tableSource) g_source_destroy(tableSource.get());
  if (dueCall != 0) g_source_remove(dueCall);
}

gboolean MountWatch::tableChanged(int, GIOCondition, void* self) noexcept {
  auto& watch = *static_cast<MountWatch*>(self);
  // Calls from file managers come first.
  if (watch.dueCall == 0) watch.dueCall = g_idle_add(callIsDue, self);
  return G_SOURCE_CONTINUE;
}

gboolean MountWatch::callIsDue(void* self) noexcept {
  auto& watch = *static_cast<MountWatch*>(self);
  watch.dueCall = 0;
  watch.haveChanged();
  return G_SOURCE_REMOVE;
}

}  // namespace sprig::desktop

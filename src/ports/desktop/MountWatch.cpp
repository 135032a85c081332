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
  source.reset(g_unix_fd_source_new(table.get(), GIOCondition(G_IO_PRI | G_IO_ERR)));
  g_source_set_callback(source.get(), G_SOURCE_FUNC(tableChanged), this, nullptr);
  // Calls from file managers come first.
  g_source_set_priority(source.get(), G_PRIORITY_DEFAULT_IDLE);
  g_source_attach(source.get(), nullptr);
}

MountWatch::~MountWatch() {
  if (source) g_source_destroy(source.get());
}

gboolean MountWatch::tableChanged(int, GIOCondition, void* self) noexcept {
  static_cast<MountWatch*>(self)->haveChanged();
  return G_SOURCE_CONTINUE;
}

}  // namespace sprig::desktop

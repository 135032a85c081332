// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/GLibMainQueue.h"

#include <glib-unix.h>

namespace sprig::desktop {

namespace {

gboolean runWaiting(int, GIOCondition, void* queue) {
  static_cast<ports::LinuxMainQueue*>(queue)->runPending();
  return G_SOURCE_CONTINUE;
}

}  // namespace

GLibMainQueue::GLibMainQueue() : source(g_unix_fd_source_new(queue.descriptor(), G_IO_IN)) {
  g_source_set_callback(source.get(), G_SOURCE_FUNC(runWaiting), &queue, nullptr);
  // Work may run a modal session, in which the rest of the work goes on.
  g_source_set_can_recurse(source.get(), TRUE);
  g_source_attach(source.get(), nullptr);
}

GLibMainQueue::~GLibMainQueue() { g_source_destroy(source.get()); }

}  // namespace sprig::desktop

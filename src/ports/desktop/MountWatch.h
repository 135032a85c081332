// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <glib.h>

#include <functional>
#include <memory>

#include "ports/linux/Descriptor.h"
#include "wire/Pointers.h"

namespace sprig::desktop {

/// Calls `changed` when something has been mounted or unmounted since this was made; once for what happens at
/// the same time.
///
/// Threads: main thread; calls from the default main context. Failure: without the kernel's table of mounts,
/// never calls.
class MountWatch {
 public:
  explicit MountWatch(std::function<void()> changed);
  ~MountWatch();
  MountWatch(const MountWatch&) = delete;
  MountWatch& operator=(const MountWatch&) = delete;

 private:
  static gboolean tableChanged(int descriptor, GIOCondition condition, void* self) noexcept;
  static gboolean callIsDue(void* self) noexcept;

  const std::function<void()> haveChanged;
  const ports::Descriptor table;
  std::unique_ptr<GSource, wire::Releaser<g_source_unref>> tableSource;
  guint dueCall = 0;  // 0: none
};

}  // namespace sprig::desktop

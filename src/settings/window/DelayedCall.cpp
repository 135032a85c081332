// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/DelayedCall.h"

#include <utility>

namespace sprig::settings {

DelayedCall::DelayedCall(std::function<void()> call) : function(std::move(call)) {}

DelayedCall::~DelayedCall() { stop(); }

void DelayedCall::start(std::chrono::milliseconds delay) {
  stop();
  source = g_timeout_add_full(
      G_PRIORITY_DEFAULT, static_cast<guint>(delay.count()),
      [](void* self) -> gboolean {
        auto& call = *static_cast<DelayedCall*>(self);
        call.source = 0;
        call.function();
        return G_SOURCE_REMOVE;
      },
      this, nullptr);
}

void DelayedCall::stop() {
  if (source != 0) g_source_remove(source);
  source = 0;
}

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <glib.h>

#include <exception>

namespace sprig::filemanagers {

/// Runs what a C caller has asked for. No exception may cross into it: in place of one there is a line in the
/// log and an empty result.
template <typename Work>
auto guardCallback(const Work& work) noexcept -> decltype(work()) {
  try {
    return work();
  } catch (const std::exception& fault) {
    g_warning("Sprig failed: %s", fault.what());
  } catch (...) {
    g_warning("Sprig failed");
  }
  return decltype(work())();
}

}  // namespace sprig::filemanagers

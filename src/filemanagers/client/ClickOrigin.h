// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <cstdint>
#include <optional>
#include <string>

namespace sprig::filemanagers {

/// From where a click came, so that a dialog opens in front of it. Empty texts: not known.
struct ClickOrigin {
  /// Of start-up notification or xdg-activation.
  std::string activationToken;
  /// "x11:<hexadecimal id>" or "wayland:<exported handle>".
  std::string parentWindow;
};

/// A click in a window of the X server, at a moment of its clock in milliseconds, if that is known.
ClickOrigin clickOriginOnX11(unsigned long window, std::optional<std::uint32_t> moment);

/// A click in a window of a Wayland compositor, which is asked for a token: one turn to it and back.
/// `context`, owned by the caller, is the display's. Nothing is said of the window: with most toolkits a
/// program can hand out its handle once only, and would lack it for dialogs of its own.
ClickOrigin clickOriginOnWayland(GAppLaunchContext* context);

}  // namespace sprig::filemanagers

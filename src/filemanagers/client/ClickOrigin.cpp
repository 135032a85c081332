// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/ClickOrigin.h"

#include <array>
#include <charconv>

#include "wire/Pointers.h"

namespace sprig::filemanagers {

namespace {

std::string hexadecimal(unsigned long number) {
  std::array<char, 2 * sizeof number> digits{};
  auto* end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
  return {digits.data(), end};
}

}  // namespace

ClickOrigin clickOriginOnX11(unsigned long window, std::optional<std::uint32_t> moment) {
  ClickOrigin origin;
  origin.parentWindow = "x11:" + hexadecimal(window);
  // Window managers read the moment of the click from the end of a start-up id: with it, the dialog is newer
  // than all that the user did before, so it gets the focus.
  if (moment) origin.activationToken = "sprig_TIME" + std::to_string(*moment);
  return origin;
}

ClickOrigin clickOriginOnWayland(GAppLaunchContext* context) {
  // GLib before 2.82 asks for a token in the name of some program only.
  const wire::ObjectPointer<GAppInfo> program(g_app_info_create_from_commandline(
      "sprig-dialog", "Sprig", G_APP_INFO_CREATE_SUPPORTS_STARTUP_NOTIFICATION, nullptr));
  if (!program) return {};
  const wire::TextPointer token(g_app_launch_context_get_startup_notify_id(context, program.get(), nullptr));
  return {token ? token.get() : "", ""};
}

}  // namespace sprig::filemanagers

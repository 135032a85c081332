// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

#include "settings/window/DelayedCall.h"

namespace sprig::settings {

/// A short message over a page that goes by itself, perhaps with a button.
///
/// Threads:   main thread. Ownership: its widgets belong to the overlay, which this must not outlive.
class Toast {
 public:
  explicit Toast(GtkOverlay* overlay);
  Toast(const Toast&) = delete;
  Toast& operator=(const Toast&) = delete;

  void show(const std::string& message);
  /// With a button, which ends it.
  void show(const std::string& message, const std::string& title, std::function<void()> perform);
  void hide();

 private:
  void reveal(const std::string& message);

  GtkWidget* const revealer;
  GtkWidget* const label;
  GtkWidget* const button;
  std::function<void()> action;
  DelayedCall end;
};

}  // namespace sprig::settings

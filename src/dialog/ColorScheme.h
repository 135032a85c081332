// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <future>

#include "wire/Pointers.h"

namespace sprig::dialog {

/// The desktop's setting for dark windows. GTK 4 itself looks at the theme only, and GNOME leaves that as it
/// is. Opening it takes milliseconds, in which GTK can be initialised.
///
/// Threads: main thread; it is opened on one of its own.
class ColorScheme {
 public:
  /// Begins to open the setting. Requires: the environment stays as it is until `follow` is called.
  ColorScheme();
  ~ColorScheme() = default;
  ColorScheme(const ColorScheme&) = delete;
  ColorScheme& operator=(const ColorScheme&) = delete;

  /// Waits until the setting is open, and has windows drawn dark for as long as it prefers dark ones and this
  /// object lives. Requires: GTK was initialised; called once.
  void follow();

 private:
  using Settings = wire::ObjectPointer<GSettings>;

  void apply();

  std::future<Settings> opened;
  Settings settings;
  bool isForced = false;
};

}  // namespace sprig::dialog

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gio/gio.h>

#include <string>

#include "wire/Pointers.h"

namespace sprig::settings {

/// A program of which a session has one instance: another start is forwarded to it over the bus, with the
/// token by which it may take the focus. Unlike GTK's own application it asks no session managers and portals
/// at the start, which takes a fifth of a window's time; whoever shows a window keeps the program running
/// with g_application_hold.
///
/// Threads: main thread.
class SingleInstance {
 public:
  /// `applicationId` is its name on the bus. `activationToken` is of this start; empty for none.
  SingleInstance(const char* applicationId, std::string activationToken);
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  /// The first instance gets the signals of all starts.
  GApplication* get() const { return application.get(); }
  /// The token of the latest start; empty for none, and when it was taken already.
  std::string takeToken();

 private:
  std::string token;
  const wire::ObjectPointer<GApplication> application;
};

}  // namespace sprig::settings

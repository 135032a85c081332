// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Alert.h"

namespace sprig::platform {

/// Whether the program's windows show where the desktop lists those of running programs: those of an
/// `accessory` one do not. A port without such a list ignores it.
enum class ActivationPolicy { regular = 0, accessory = 1 };

/// The program as the desktop sees it, and its modal sessions.
///
/// Threads:   main thread.
/// Ownership: none kept; an alert stays the caller's, and is not touched after its session.
/// Failure:   where nothing can be shown, `runModal` returns at once with a code that no button has.
class Application {
 public:
  virtual ~Application() = default;

  virtual void setActivationPolicy(ActivationPolicy policy) = 0;

  /// Brings the program to the front if the desktop agrees.
  virtual void activate() = 0;

  /// Brings the program to the front whatever else is there.
  virtual void activateIgnoringOtherApps() = 0;

  /// Shows the alert and blocks until the session ends, running the main queue meanwhile. What the user
  /// typed is in the alert's text field before an action is performed. Returns the code given to
  /// `stopModal`, or the tag of a button without a target. The window is gone when this returns.
  virtual int runModal(Alert& alert) = 0;

  /// Ends the innermost modal session with `code`; does nothing when there is none.
  virtual void stopModal(int code) = 0;
};

}  // namespace sprig::platform

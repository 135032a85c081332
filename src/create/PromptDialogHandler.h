// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

#include "platform/Action.h"
#include "platform/Window.h"

namespace sprig {

/// Ends the modal session of a name prompt: target of its buttons and its text field, delegate of its window.
///
/// Threads: main thread. Ownership: lives for one prompt, and never keeps the window alive.
class PromptDialogHandler : public platform::ControlTarget, public platform::WindowDelegate {
 public:
  /// The codes with which the session ends; the buttons' tags, too.
  static constexpr int confirmCode = 1000;
  static constexpr int cancelCode = 1001;

  static constexpr platform::Selector createAction{"onCreate:"};
  static constexpr platform::Selector cancelAction{"onCancel:"};

  std::weak_ptr<platform::Window> window;
  bool isConfirmed = false;

  void onCreate();
  void onCancel();
  void performAction(platform::Selector action) override;
  void windowWillClose() override;

 private:
  void end(int code);
};

}  // namespace sprig

// SPDX-License-Identifier: GPL-3.0-or-later

#include "create/PromptDialogHandler.h"

#include "platform/Platform.h"

namespace sprig {

void PromptDialogHandler::onCreate() {
  isConfirmed = true;
  end(confirmCode);
}

void PromptDialogHandler::onCancel() {
  isConfirmed = false;
  end(cancelCode);
}

void PromptDialogHandler::performAction(platform::Selector action) {
  if (action == createAction) onCreate();
  if (action == cancelAction) onCancel();
}

void PromptDialogHandler::windowWillClose() {
  // After a confirmation the window closes, too; the session has its code then.
  if (!isConfirmed) platform::current().application.stopModal(cancelCode);
}

void PromptDialogHandler::end(int code) {
  platform::current().application.stopModal(code);
  if (const auto shown = window.lock()) shown->orderOut();
}

}  // namespace sprig

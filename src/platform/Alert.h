// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "platform/Action.h"
#include "platform/Image.h"
#include "platform/Window.h"

namespace sprig::platform {

/// A button of an alert. Without a target, pressing it ends the modal session with its tag as code.
struct Button {
  std::string title;
  int tag = 0;
  /// The key that presses it ("\r" Return, "\x1b" Escape); empty for none.
  std::string keyEquivalent;
  Selector action;
  ControlTarget* target = nullptr;
};

enum class AlertStyle { warning = 0, informational = 1, critical = 2 };

/// A small modal window that says or asks something: plain data that the product fills in and
/// `Application::runModal` shows.
struct Alert {
  /// The code of the first button; the following buttons count up from it.
  static constexpr int firstButtonCode = 1000;

  std::string messageText;
  std::string informativeText;
  AlertStyle style = AlertStyle::warning;
  /// Absent: the platform's default for the style.
  std::optional<Image> icon;
  /// The first one is the default.
  std::deque<Button> buttons;
  /// Shown below the texts; null for none.
  std::shared_ptr<View> accessoryView;
  std::shared_ptr<Window> window = std::make_shared<Window>();

  /// Adds a button with the next code as tag; the first one answers to Return.
  Button& addButton(std::string title) {
    const int tag = firstButtonCode + static_cast<int>(buttons.size());
    buttons.push_back({std::move(title), tag, buttons.empty() ? "\r" : "", {}, nullptr});
    return buttons.back();
  }
};

}  // namespace sprig::platform

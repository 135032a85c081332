// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Action.h"

namespace sprig::platform {

/// Position and size in points; the origin is the lower left corner.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  friend bool operator==(const Rect&, const Rect&) = default;
};

/// A stretch of text, in UTF-16 code units.
struct TextRange {
  std::size_t location = 0;
  std::size_t length = 0;
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// Takes the keys for a text field while the field is edited.
struct FieldEditor {
  /// Absent: all of the text.
  std::optional<TextRange> selectedRange;
};

/// How the focus of a field is drawn.
enum class FocusRingType { standard = 0, none = 1, exterior = 2 };

struct TextField;

/// A plain rectangle holding other views.
struct View {
  Rect frame;
  std::vector<std::shared_ptr<TextField>> subviews;
};

/// One line of text the user can edit. A port may ignore how the focus ring is drawn, and whether the text
/// can be edited and selected: it always can.
struct TextField {
  Rect frame;
  std::string stringValue;
  /// Shown dimly while the field is empty; empty for none.
  std::string placeholderString;
  /// Points, of the system's font. 0: the port's choice.
  double fontSize = 0;
  bool isEditable = true;
  bool isSelectable = true;
  FocusRingType focusRingType = FocusRingType::standard;
  /// Performed when the user presses Return in the field.
  Selector action;
  ControlTarget* target = nullptr;
  /// Present while the field has the keyboard in a visible window.
  std::optional<FieldEditor> currentEditor;
};

/// Told what happens to a window; not owned by it.
class WindowDelegate {
 public:
  virtual ~WindowDelegate() = default;
  /// The user is closing the window by other means than a button of it.
  virtual void windowWillClose() = 0;
};

enum class WindowLevel { normal = 0, floating = 3 };

/// The window of an alert: plain state, with operations that change it. A port reads the state when a modal
/// session begins, and again after every piece of main-queue work and every action in it. Level, centring and
/// the order of windows are for ports that have windows; one may ignore `hidesOnDeactivate` where no desktop
/// hides windows.
///
/// Threads: main thread.
struct Window {
  WindowDelegate* delegate = nullptr;
  WindowLevel level = WindowLevel::normal;
  bool hidesOnDeactivate = true;
  bool isCentered = false;
  bool isVisible = false;
  /// In front of the windows of programs that are more active than ours.
  bool isFrontRegardless = false;
  /// Takes the keys.
  bool isKey = false;
  std::shared_ptr<TextField> initialFirstResponder;
  std::shared_ptr<TextField> firstResponder;

  void center() { isCentered = true; }
  void orderFrontRegardless() { isVisible = isFrontRegardless = true; }
  void makeKey() { isKey = true; }
  void makeKeyAndOrderFront() { isVisible = isKey = true; }
  void orderOut() { isVisible = isFrontRegardless = isKey = false; }

  /// Gives `field` the keyboard; in a visible window it gets a field editor with all text selected.
  void makeFirstResponder(const std::shared_ptr<TextField>& field) {
    firstResponder = field;
    if (isVisible && !field->currentEditor) field->currentEditor.emplace();
  }
};

}  // namespace sprig::platform

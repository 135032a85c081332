// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <variant>
#include <vector>

/// What the extension and the process that draws its dialogs say to each other: one JSON object a line,
/// commands down to the dialog's standard input, events up from its standard output. The end of either stream
/// ends the dialog.
///
/// Threads: any. All text is UTF-8.
namespace sprig::dialog {

/// The key that presses a button wherever the keyboard is in the window.
enum class ButtonKey { none, enter, escape };

struct ButtonSpec {
  std::string title;
  ButtonKey key = ButtonKey::none;
};

struct IconSpec {
  /// Names in the icon theme; the first one that it has is drawn.
  std::vector<std::string> names;
  /// Pixels, before the desktop's scale.
  int size = 0;
  /// What a screen reader says; empty for an icon that only decorates.
  std::string description;
};

/// One line of text the user can edit, the name of a file. While it is typed, the window says what is wrong
/// with it; whether it is taken all the same is up to the other side.
struct FieldSpec {
  std::string text;
  /// Shown dimly while the field is empty; empty for none.
  std::string placeholder;
  /// Pixels, before the desktop's scale.
  int width = 0;
  /// Points; the text is never smaller than the desktop's own. 0: as large as that.
  int fontSize = 0;
};

/// A stretch of the field's text, in UTF-16 code units.
struct Selection {
  std::size_t location = 0;
  std::size_t length = 0;
};

/// The first command: opens the window.
struct Show {
  std::string title;
  std::string text;
  std::optional<IconSpec> icon;
  /// It has the keyboard at first, with all of its text selected.
  std::optional<FieldSpec> field;
  /// The most important one first.
  std::vector<ButtonSpec> buttons;
  /// Stays above ordinary windows.
  bool isFloating = false;
  /// Stands in the middle of the screen, if it belongs to no window.
  bool isCentered = false;
  /// Is left out where the desktop lists windows.
  bool isAccessory = false;
  /// The user has done other things since the click that it comes from, and windows may yet open because of
  /// them. It takes the focus all the same, and doesn't let them have it at first.
  bool isLate = false;
  /// What lets the window take the focus; empty for none.
  std::string activationToken;
  /// The window this one belongs to, "x11:<hexadecimal id>" or "wayland:<exported handle>"; empty for none.
  std::string parentWindow;
};

/// Changes the window.
struct Change {
  /// Absent: the field keeps its text.
  std::optional<std::string> text;
  /// Absent: the field keeps its selection.
  std::optional<Selection> selection;
  bool comesToFront = false;
  /// As in `Show`, for coming to the front.
  std::string activationToken;
};

/// Ends the dialog.
struct Close {};

using Command = std::variant<Show, Change, Close>;

enum class EventKind {
  /// The window is on the screen; and again whenever a change has brought it to the front, which shows that
  /// the dialog is alive.
  shown,
  /// A button was pressed, by whatever means.
  button,
  /// Return was pressed in the field.
  field,
  /// The user wants the window closed. It stays until the dialog is told to close.
  close,
};

struct Event {
  EventKind kind = EventKind::shown;
  /// Which of the buttons, for `button`.
  std::size_t button = 0;
  /// What stands in the field; empty without one.
  std::string text;
  /// What lets a window that comes after this event take the focus; empty for none.
  std::string activationToken{};
};

/// One line, line break included. Requires: UTF-8.
std::string encode(const Command& command);
std::string encode(const Event& event);

/// The message in a line (without its line break), or why it is none. Keys that are not known are ignored.
tl::expected<Command, std::string> decodeCommand(std::string_view line);
tl::expected<Event, std::string> decodeEvent(std::string_view line);

}  // namespace sprig::dialog

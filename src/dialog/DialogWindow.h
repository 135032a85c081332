// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "dialog/DialogMessages.h"
#include "dialog/NameField.h"

namespace sprig::dialog {

/// The window of an alert or a prompt. It draws what it is told and reports what the user does; it decides
/// nothing, so that it stays as it is when a button is pressed.
///
/// Threads: main thread, after GTK was initialised.
/// Ownership: the window on the screen lives as long as this.
class DialogWindow {
 public:
  using Report = std::function<void(const Event&)>;

  /// Shows the window.
  DialogWindow(const Show& show, Report reportEvent);
  ~DialogWindow();
  DialogWindow(const DialogWindow&) = delete;
  DialogWindow& operator=(const DialogWindow&) = delete;

  void apply(const Change& change);

 private:
  void addContent(const Show& show);
  GtkWidget* makeColumn(const Show& show);
  GtkWidget* makeField(const FieldSpec& spec);
  GtkWidget* makeButtons(const std::vector<ButtonSpec>& specs);
  GtkWidget* makeButton(const ButtonSpec& spec);
  void describeForScreenReaders(const Show& show);
  void closeOnEscape();
  void pressOnEscape(std::size_t index);
  void addShortcut(guint key, GtkShortcutFunc perform, void* data);
  void open(const Show& show);
  void keepFocus();
  void followFocus();
  void report(EventKind kind, std::size_t button = 0);
  std::size_t indexOf(const void* button) const;

  const Report listener;
  // All owned by the window.
  GtkWindow* const window;
  GtkWidget* heading = nullptr;
  GtkWidget* details = nullptr;
  std::optional<NameField> field;
  std::vector<GtkWidget*> buttons;
  /// Microseconds on the monotonic clock; 0 before the window has the focus.
  gint64 focusIsKeptUntil = 0;
};

}  // namespace sprig::dialog

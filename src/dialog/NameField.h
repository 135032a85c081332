// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include "dialog/DialogMessages.h"

namespace sprig::dialog {

/// The field in which the user types a name, with room for a note on it below. It takes every name.
///
/// Threads: main thread, after GTK was initialised. Ownership: the widgets belong to their parent, which this
/// must not outlive.
class NameField {
 public:
  explicit NameField(const FieldSpec& spec);
  NameField(const NameField&) = delete;
  NameField& operator=(const NameField&) = delete;

  /// The field and the note.
  GtkWidget* widget() const { return box; }
  GtkEntry* entry() const { return GTK_ENTRY(field); }
  const char* text() const { return gtk_editable_get_text(GTK_EDITABLE(field)); }

  /// Changes the text and what is selected of it.
  void edit(const Change& change);

 private:
  void updateNote();
  void describe(bool isInvalid);

  GtkWidget* const box;
  GtkWidget* const field;
  GtkWidget* const sign;
  GtkWidget* const note;
  GtkWidget* const noteRow;
};

}  // namespace sprig::dialog

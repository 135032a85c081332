// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/NameField.h"

#include <algorithm>

#include "dialog/NameNote.h"
#include "wire/Pointers.h"

namespace sprig::dialog {

namespace {

constexpr int gap = 6;  // pixels, before the desktop's scale
/// Characters of an average line of the note, so that the window never becomes wider for it.
constexpr int lineLength = 36;
/// No colour instead: that of themes for errors is hard to read on some backgrounds.
constexpr const char* problemIcon = "dialog-warning-symbolic";

using FontDescription = std::unique_ptr<PangoFontDescription, wire::Releaser<pango_font_description_free>>;
using Attributes = std::unique_ptr<PangoAttrList, wire::Releaser<pango_attr_list_unref>>;

/// Points.
int desktopFontSize(GtkWidget* widget) {
  char* name = nullptr;
  g_object_get(gtk_widget_get_settings(widget), "gtk-font-name", &name, nullptr);
  const wire::TextPointer owned(name);
  const FontDescription font(pango_font_description_from_string(name == nullptr ? "" : name));
  return pango_font_description_get_size(font.get()) / PANGO_SCALE;
}

void setFontSize(GtkWidget* entry, int points) {
  if (points <= desktopFontSize(entry)) return;
  const Attributes attributes(pango_attr_list_new());
  pango_attr_list_insert(attributes.get(), pango_attr_size_new(points * PANGO_SCALE));
  gtk_entry_set_attributes(GTK_ENTRY(entry), attributes.get());
}

/// Screen readers read it out when it appears.
GtkWidget* makeNote() {
  auto* label = GTK_WIDGET(g_object_new(GTK_TYPE_LABEL, "accessible-role", GTK_ACCESSIBLE_ROLE_ALERT, "wrap",
                                        TRUE, "max-width-chars", lineLength, "xalign", 0.0, nullptr));
  gtk_widget_add_css_class(label, "caption");
  return label;
}

GtkWidget* makeSign() {
  auto* image = GTK_WIDGET(g_object_new(GTK_TYPE_IMAGE, "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION,
                                        "icon-name", problemIcon, nullptr));
  gtk_widget_set_valign(image, GTK_ALIGN_START);
  return image;
}

/// How many characters of `text` the first `units` UTF-16 code units hold.
int characters(const char* text, std::size_t units) {
  int count = 0;
  std::size_t passed = 0;
  for (; *text != '\0' && passed < units; text = g_utf8_next_char(text)) {
    passed += g_utf8_get_char(text) > 0xFFFF ? 2 : 1;
    ++count;
  }
  return count;
}

}  // namespace

NameField::NameField(const FieldSpec& spec)
    : box(gtk_box_new(GTK_ORIENTATION_VERTICAL, gap)),
      field(gtk_entry_new()),
      sign(makeSign()),
      note(makeNote()),
      noteRow(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, gap)) {
  gtk_widget_set_size_request(field, spec.width, -1);
  setFontSize(field, spec.fontSize);
  gtk_editable_set_text(GTK_EDITABLE(field), spec.text.c_str());
  if (!spec.placeholder.empty()) gtk_entry_set_placeholder_text(entry(), spec.placeholder.c_str());
  gtk_box_append(GTK_BOX(box), field);
  gtk_box_append(GTK_BOX(noteRow), sign);
  gtk_box_append(GTK_BOX(noteRow), note);
  gtk_box_append(GTK_BOX(box), noteRow);
  g_signal_connect(field, "changed", G_CALLBACK(+[](GtkEntry*, NameField* self) { self->updateNote(); }),
                   this);
  updateNote();
}

/// A selection is there all the time, if there are one before and one afterwards: an empty one gives up X11's
/// primary selection, and the news of that can arrive when the next one has claimed it, and take that away.
void NameField::edit(const Change& change) {
  auto* editable = GTK_EDITABLE(field);
  const int oldLength = change.text ? static_cast<int>(g_utf8_strlen(text(), -1)) : 0;
  int end = oldLength;
  if (change.text) gtk_editable_insert_text(editable, change.text->c_str(), -1, &end);
  if (change.selection) {
    const wire::TextPointer newText(gtk_editable_get_chars(editable, oldLength, -1));
    const auto& [location, length] = *change.selection;
    gtk_widget_grab_focus(field);
    gtk_editable_select_region(editable, oldLength + characters(newText.get(), location),
                               oldLength + characters(newText.get(), location + length));
  }
  gtk_editable_delete_text(editable, 0, oldLength);
}

void NameField::updateNote() {
  const auto [kind, said] = noteOn(text());
  const bool isProblem = kind == NoteKind::problem;
  gtk_widget_set_visible(sign, isProblem ? TRUE : FALSE);
  gtk_label_set_text(GTK_LABEL(note), said.c_str());
  gtk_accessible_update_property(GTK_ACCESSIBLE(note), GTK_ACCESSIBLE_PROPERTY_LABEL, said.c_str(), -1);
  gtk_widget_set_visible(noteRow, kind == NoteKind::none ? FALSE : TRUE);
  describe(isProblem);
}

void NameField::describe(bool isInvalid) {
  auto* accessible = GTK_ACCESSIBLE(field);
  gtk_accessible_update_state(accessible, GTK_ACCESSIBLE_STATE_INVALID,
                              isInvalid ? GTK_ACCESSIBLE_INVALID_TRUE : GTK_ACCESSIBLE_INVALID_FALSE, -1);
  if (gtk_widget_get_visible(noteRow) != FALSE) {
    gtk_accessible_update_relation(accessible, GTK_ACCESSIBLE_RELATION_DESCRIBED_BY, note, nullptr, -1);
  } else {
    gtk_accessible_reset_relation(accessible, GTK_ACCESSIBLE_RELATION_DESCRIBED_BY);
  }
}

}  // namespace sprig::dialog

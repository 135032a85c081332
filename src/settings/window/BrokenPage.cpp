// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/BrokenPage.h"

#include <utility>

#include "settings/window/Widgets.h"
#include "text/Text.h"

namespace sprig::settings {

BrokenPage::BrokenPage(SettingsModel& settingsModel, std::function<void(const std::string&)> tellUser)
    : model(settingsModel),
      tell(std::move(tellUser)),
      page(makeBox(GTK_ORIENTATION_VERTICAL, gap)),
      reason(makeText("")),
      view(gtk_text_view_new()),
      buffer(gtk_text_view_get_buffer(GTK_TEXT_VIEW(view))),
      markedLine(gtk_text_buffer_create_tag(buffer, nullptr, "paragraph-background", "rgba(237,51,59,0.25)",
                                            nullptr)),
      saveButton(gtk_button_new_with_label("Save")),
      restoreButton(gtk_button_new_with_label("Restore Backup")),
      afreshButton(gtk_button_new_with_label("Start Afresh")) {
  setMargins(page, pageMargin, pageMargin);
  auto* title = makeText("Your configuration can’t be read");
  gtk_widget_add_css_class(title, "title-3");
  auto* explanation = makeText("Until it can, the menu has the templates that come with Sprig.");
  gtk_widget_add_css_class(explanation, "dim-label");
  gtk_widget_add_css_class(reason, "sprig-note");
  gtk_text_view_set_monospace(GTK_TEXT_VIEW(view), TRUE);
  gtk_text_view_set_wrap_mode(GTK_TEXT_VIEW(view), GTK_WRAP_WORD_CHAR);
  gtk_text_view_set_left_margin(GTK_TEXT_VIEW(view), gap);
  gtk_text_view_set_top_margin(GTK_TEXT_VIEW(view), smallGap);
  gtk_text_view_set_accepts_tab(GTK_TEXT_VIEW(view), FALSE);
  setAccessibleName(view, "Configuration");
  auto* scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), view);
  gtk_widget_set_vexpand(scroller, TRUE);
  gtk_widget_set_overflow(scroller, GTK_OVERFLOW_HIDDEN);
  gtk_widget_add_css_class(scroller, "sprig-editor-frame");
  for (auto* part : {title, explanation, reason, scroller, makeButtons()})
    gtk_box_append(GTK_BOX(page), part);
  connect(buffer, "changed", [this] { check(); });
}

GtkWidget* BrokenPage::makeButtons() {
  gtk_widget_set_tooltip_text(restoreButton, "Go back to the last configuration that this program has kept");
  gtk_widget_set_tooltip_text(afreshButton,
                              "Begin with the templates that come with Sprig; a copy of this text is kept");
  gtk_widget_add_css_class(saveButton, "suggested-action");
  connect(saveButton, "clicked", [this] { save(); });
  connect(restoreButton, "clicked", [this] {
    if (model.restoreBackup()) tell("The backup is in force again.");
  });
  connect(afreshButton, "clicked", [this] { startAfresh(); });
  auto* space = makeLabel("");
  gtk_widget_set_hexpand(space, TRUE);
  auto* row = makeBox(GTK_ORIENTATION_HORIZONTAL, smallGap);
  for (auto* part : {afreshButton, restoreButton, space, saveButton}) gtk_box_append(GTK_BOX(row), part);
  return row;
}

void BrokenPage::update() {
  if (!model.fault()) {
    shown.reset();
    return;
  }
  const bool isText = text::isValidUTF8(model.text());
  const bool canWrite = model.isWritable() && model.fault()->position.has_value();
  gtk_text_view_set_editable(GTK_TEXT_VIEW(view), canWrite && isText ? TRUE : FALSE);
  gtk_widget_set_sensitive(restoreButton, canWrite && model.backup() ? TRUE : FALSE);
  gtk_widget_set_sensitive(afreshButton, canWrite ? TRUE : FALSE);
  if (shown == model.text()) return check();
  shown = model.text();
  const auto text = text::toValidUTF8(*shown);
  gtk_text_buffer_set_text(buffer, text.c_str(), static_cast<int>(text.size()));
  check();
  const auto position = model.fault()->position.value_or(TextPosition());
  GtkTextIter place;
  gtk_text_buffer_get_iter_at_line_offset(buffer, &place, static_cast<int>(position.line) - 1,
                                          static_cast<int>(position.column) - 1);
  gtk_text_buffer_place_cursor(buffer, &place);
  gtk_text_view_scroll_to_mark(GTK_TEXT_VIEW(view), gtk_text_buffer_get_insert(buffer), 0, TRUE, 0, 0.3);
  gtk_widget_grab_focus(view);
}

/// What is typed.
void BrokenPage::check() {
  if (!shown) return;
  GtkTextIter begin;
  GtkTextIter end;
  gtk_text_buffer_get_bounds(buffer, &begin, &end);
  gtk_text_buffer_remove_tag(buffer, markedLine, &begin, &end);
  const auto typed = textIn(buffer);
  const auto fault =
      model.fault() && !model.fault()->position ? model.fault() : SettingsModel::faultIn(typed);
  gtk_widget_set_sensitive(saveButton, !fault && model.isWritable() ? TRUE : FALSE);
  gtk_label_set_text(GTK_LABEL(reason),
                     fault ? fault->reason.c_str() : "This text can be read. Save it, and it is in force.");
  if (fault) mark(*fault);
}

void BrokenPage::mark(const TextFault& fault) {
  if (!fault.position) return;
  GtkTextIter begin;
  gtk_text_buffer_get_iter_at_line(buffer, &begin, static_cast<int>(fault.position->line) - 1);
  auto end = begin;
  gtk_text_iter_forward_line(&end);
  gtk_text_buffer_apply_tag(buffer, markedLine, &begin, &end);
}

void BrokenPage::save() {
  if (model.saveText(textIn(buffer))) tell("The configuration is in force again.");
}

void BrokenPage::startAfresh() {
  if (const auto copy = model.startAfresh()) tell("The old text is kept in “" + copy->path() + "”.");
}

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/TextPage.h"

#include <utility>

#include "settings/window/Widgets.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig::settings {

TextPage::TextPage(SettingsModel& settingsModel, std::function<void(const std::string&)> tellUser)
    : model(settingsModel),
      tell(std::move(tellUser)),
      page(makeBox(GTK_ORIENTATION_VERTICAL, gap)),
      title(makeText("")),
      explanation(makeText("")),
      reason(makeText("")),
      bar(makeBar()),
      view(makeTextView(translated("Configuration"))),
      buffer(gtk_text_view_get_buffer(GTK_TEXT_VIEW(view))),
      markedLine(gtk_text_buffer_create_tag(buffer, nullptr, "paragraph-background", "rgba(237,51,59,0.25)",
                                            nullptr)),
      saveButton(gtk_button_new_with_label(translated("Save"))),
      restoreButton(gtk_button_new_with_label(translated("Restore Backup"))),
      afreshButton(gtk_button_new_with_label(translated("Start Afresh"))) {
  setMargins(page, pageMargin, pageMargin);
  // Its brackets, in every language.
  gtk_widget_set_direction(view, GTK_TEXT_DIR_LTR);
  gtk_widget_add_css_class(title, "title-3");
  gtk_widget_add_css_class(explanation, "dim-label");
  gtk_widget_add_css_class(reason, "sprig-note");
  for (auto* part : {title, explanation, reason, bar, makeTextFrame(view, 0), makeButtons()})
    gtk_box_append(GTK_BOX(page), part);
  connect(buffer, "changed", [this] { check(); });
}

GtkWidget* TextPage::makeBar() {
  auto* text = makeText(translated("The file was changed elsewhere, too."));
  gtk_widget_set_hexpand(text, TRUE);
  auto* reloadButton = gtk_button_new_with_label(translated("Reload"));
  auto* keepButton = gtk_button_new_with_label(translated("Keep Mine"));
  connect(reloadButton, "clicked", [this] { reload(); });
  connect(keepButton, "clicked", [this] { keepMine(); });
  auto* box = makeBox(GTK_ORIENTATION_HORIZONTAL, smallGap);
  gtk_widget_add_css_class(box, "sprig-bar");
  for (auto* part : {text, reloadButton, keepButton}) gtk_box_append(GTK_BOX(box), part);
  return box;
}

GtkWidget* TextPage::makeButtons() {
  gtk_widget_set_tooltip_text(restoreButton,
                              translated("Go back to the last configuration that this program has kept"));
  gtk_widget_set_tooltip_text(
      afreshButton, translated("Begin with the templates that come with Sprig; a copy of this text is kept"));
  gtk_widget_add_css_class(saveButton, "suggested-action");
  connect(saveButton, "clicked", [this] { save(); });
  connect(restoreButton, "clicked", [this] {
    if (replaceTyped([this] { return model.restoreBackup(); }))
      tell(translated("The backup is in force again."));
  });
  connect(afreshButton, "clicked", [this] { startAfresh(); });
  auto* space = makeLabel("");
  gtk_widget_set_hexpand(space, TRUE);
  auto* row = makeBox(GTK_ORIENTATION_HORIZONTAL, smallGap);
  for (auto* part : {afreshButton, restoreButton, space, saveButton}) gtk_box_append(GTK_BOX(row), part);
  return row;
}

bool TextPage::isTyped() const { return shown && textIn(buffer) != text::toValidUTF8(*shown); }

void TextPage::update() {
  if (!shown || (shown != model.editableText() && !isTyped())) return reload();
  check();
}

void TextPage::reload() {
  shown = model.editableText();
  const auto text = text::toValidUTF8(*shown);
  gtk_text_buffer_set_text(buffer, text.c_str(), static_cast<int>(text.size()));
  check();
  const auto position = model.fault() ? model.fault()->position.value_or(TextPosition()) : TextPosition();
  GtkTextIter place;
  gtk_text_buffer_get_iter_at_line_offset(buffer, &place, static_cast<int>(position.line) - 1,
                                          static_cast<int>(position.column) - 1);
  gtk_text_buffer_place_cursor(buffer, &place);
  gtk_text_view_scroll_to_mark(GTK_TEXT_VIEW(view), gtk_text_buffer_get_insert(buffer), 0, TRUE, 0, 0.3);
  gtk_widget_grab_focus(view);
}

void TextPage::keepMine() {
  shown = model.editableText();
  check();
}

/// What is typed.
void TextPage::check() {
  if (!shown) return;
  GtkTextIter begin;
  GtkTextIter end;
  gtk_text_buffer_get_bounds(buffer, &begin, &end);
  gtk_text_buffer_remove_tag(buffer, markedLine, &begin, &end);
  const bool isUnreadable = model.fault() && !model.fault()->position;
  const auto fault = isUnreadable ? model.fault() : SettingsModel::faultIn(textIn(buffer));
  const char* good = isTyped() ? translated("This text can be read. Save it, and it is in force.")
                               : translated("This text is in force.");
  gtk_label_set_text(GTK_LABEL(reason), fault ? fault->reason.c_str() : good);
  if (fault) mark(*fault);
  updateButtons(!fault);
}

void TextPage::updateButtons(bool isSaveable) {
  const bool isBroken = model.fault().has_value();
  const bool canWrite = model.isWritable() && (!isBroken || model.fault()->position);
  const bool isAsking = isTyped() && shown != model.editableText();
  gtk_label_set_text(GTK_LABEL(title), isBroken ? translated("Your configuration can’t be read")
                                                : translated("Your configuration"));
  gtk_label_set_text(GTK_LABEL(explanation),
                     isBroken ? translated("Until it can, the menu has the templates that come with Sprig.")
                              : translated("The file that keeps your templates and settings."));
  setVisible(bar, isAsking);
  setVisible(afreshButton, isBroken);
  gtk_text_view_set_editable(GTK_TEXT_VIEW(view), canWrite && text::isValidUTF8(*shown) ? TRUE : FALSE);
  gtk_widget_set_sensitive(saveButton, isSaveable && canWrite && isTyped() && !isAsking ? TRUE : FALSE);
  gtk_widget_set_sensitive(restoreButton, canWrite && model.backup() ? TRUE : FALSE);
  gtk_widget_set_sensitive(afreshButton, canWrite ? TRUE : FALSE);
}

void TextPage::mark(const TextFault& fault) {
  if (!fault.position) return;
  GtkTextIter begin;
  gtk_text_buffer_get_iter_at_line(buffer, &begin, static_cast<int>(fault.position->line) - 1);
  auto end = begin;
  gtk_text_iter_forward_line(&end);
  gtk_text_buffer_apply_tag(buffer, markedLine, &begin, &end);
}

void TextPage::save() {
  const auto old = shown.value_or("");
  if (replaceTyped([&] { return model.saveText(old, textIn(buffer)); }))
    tell(translated("The configuration is saved, and in force."));
}

/// Does what leaves nothing of what was typed unsaved, unless it fails.
bool TextPage::replaceTyped(const std::function<bool()>& replace) {
  const auto old = std::exchange(shown, textIn(buffer));
  if (replace()) return true;
  shown = old;
  update();
  return false;
}

void TextPage::startAfresh() {
  std::optional<platform::FileURL> copy;
  replaceTyped([&] { return (copy = model.startAfresh()).has_value(); });
  if (copy) tell(translated("The old text is kept in “%1%”.", {copy->path()}));
}

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/TemplateEditor.h"

#include <utility>

#include "dialog/NameNote.h"
#include "finder/TemplateCategories.h"
#include "settings/TemplatePreview.h"
#include "settings/window/FileChooser.h"
#include "settings/window/PlaceholderButton.h"
#include "settings/window/Widgets.h"
#include "text/Text.h"
#include "translation/translated.h"
#include "wire/Pointers.h"

namespace sprig::settings {

namespace {

/// A pause in typing.
constexpr std::chrono::milliseconds pause(500);

std::string textOf(GtkWidget* editable) { return gtk_editable_get_text(GTK_EDITABLE(editable)); }

void setText(GtkWidget* editable, const std::string& text) {
  // What is typed keeps its cursor.
  if (textOf(editable) != text) gtk_editable_set_text(GTK_EDITABLE(editable), text.c_str());
}

GtkWidget* entryOf(GtkWidget* comboBox) { return gtk_combo_box_get_child(GTK_COMBO_BOX(comboBox)); }

platform::FileURL folderAtFirst() {
  const char* documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
  const char* folder = documents != nullptr ? documents : g_get_home_dir();
  return platform::FileURL(folder != nullptr && *folder == '/' ? folder : "/");
}

/// What users read as the category.
std::string sectionOf(const std::string& category) { return sectionTitle(categoryDisplayName(category)); }

}  // namespace

TemplateEditor::TemplateEditor(SettingsModel& settingsModel,
                               std::function<void(const std::string&)> failureHandler)
    : model(settingsModel),
      failed(std::move(failureHandler)),
      page(makeBox(GTK_ORIENTATION_VERTICAL, 0)),
      barText(makeText("")),
      barButtons(makeBox(GTK_ORIENTATION_HORIZONTAL, smallGap)),
      bar(makeBar()),
      symbol([this] { takeIn(); }),
      name(gtk_entry_new()),
      pattern(gtk_entry_new()),
      extension(gtk_entry_new()),
      category(gtk_combo_box_text_new_with_entry()),
      asks(gtk_switch_new()),
      favorite(gtk_switch_new()),
      previewName(makeText("")),
      folderButton(gtk_button_new()),
      previewNote(makeText("")),
      content({[this] { takeIn(); }, failed}),
      form(makeBox(GTK_ORIENTATION_VERTICAL, gap)),
      folder(folderAtFirst()),
      writing([this] { write(); }) {
  for (auto* part : {makeNameRow(), makeFields(), makePreviewRow(), content.widget()}) {
    gtk_box_append(GTK_BOX(form), part);
  }
  gtk_box_append(GTK_BOX(page), bar);
  gtk_box_append(GTK_BOX(page), makeScrolledColumn(form));
  for (auto* editable : {name, pattern, extension, entryOf(category)}) watch(editable);
  for (auto* control : {asks, favorite}) connect(control, "notify::active", [this] { takeIn(); });
}

GtkWidget* TemplateEditor::makeBar() {
  auto* box = makeBox(GTK_ORIENTATION_HORIZONTAL, gap);
  gtk_widget_add_css_class(box, "sprig-bar");
  gtk_widget_set_hexpand(barText, TRUE);
  auto* reload = gtk_button_new_with_label(translated("Reload"));
  auto* keep = gtk_button_new_with_label(translated("Keep Mine"));
  connect(reload, "clicked", [this] {
    draft->reload();
    show();
  });
  connect(keep, "clicked", [this] {
    draft->keepMine();
    show();
  });
  gtk_box_append(GTK_BOX(barButtons), reload);
  gtk_box_append(GTK_BOX(barButtons), keep);
  gtk_box_append(GTK_BOX(box), barText);
  gtk_box_append(GTK_BOX(box), barButtons);
  return box;
}

GtkWidget* TemplateEditor::makeNameRow() {
  gtk_widget_set_hexpand(name, TRUE);
  gtk_widget_set_valign(name, GTK_ALIGN_CENTER);
  auto* label = makeLabel(translated("Name in the menu"));
  for (const auto* style : {"dim-label", "caption"}) gtk_widget_add_css_class(label, style);
  labelWidget(label, name);
  auto* column = makeBox(GTK_ORIENTATION_VERTICAL, smallGap);
  gtk_widget_set_valign(column, GTK_ALIGN_CENTER);
  gtk_widget_set_hexpand(column, TRUE);
  gtk_box_append(GTK_BOX(column), label);
  gtk_box_append(GTK_BOX(column), name);
  auto* row = makeBox(GTK_ORIENTATION_HORIZONTAL, gap);
  gtk_box_append(GTK_BOX(row), symbol.widget());
  gtk_box_append(GTK_BOX(row), column);
  return row;
}

GtkWidget* TemplateEditor::makeFields() {
  gtk_editable_set_width_chars(GTK_EDITABLE(pattern), 26);
  gtk_editable_set_width_chars(GTK_EDITABLE(extension), 8);
  gtk_editable_set_max_width_chars(GTK_EDITABLE(extension), 8);
  gtk_entry_set_placeholder_text(GTK_ENTRY(extension), ".txt");
  auto* insert =
      makePlaceholderButton(placeholdersOfNames(), [this](const auto& token) { insertInPattern(token); });
  auto* patternBox = makeBox(GTK_ORIENTATION_HORIZONTAL, smallGap);
  gtk_box_append(GTK_BOX(patternBox), pattern);
  gtk_box_append(GTK_BOX(patternBox), insert);
  auto* card = makeCard();
  setAccessibleName(card, translated("Template"));
  addCardRow(card, translated("File name"), "", patternBox);
  setAccessibleName(pattern, translated("File name"));
  addCardRow(card, translated("Extension"), "", extension);
  addCardRow(card, translated("Category"), translated("Its section under “More Templates”"), category);
  setAccessibleName(entryOf(category), translated("Category"));
  addCardRow(card, translated("Always ask for a name"), "", asks);
  addCardRow(card, translated("Favourite"), "", favorite);
  return card;
}

GtkWidget* TemplateEditor::makePreviewRow() {
  gtk_widget_set_hexpand(previewName, TRUE);
  gtk_label_set_selectable(GTK_LABEL(previewName), TRUE);
  gtk_widget_set_focusable(previewName, FALSE);
  gtk_widget_set_tooltip_text(folderButton, translated("Try it in another folder"));
  gtk_widget_set_valign(folderButton, GTK_ALIGN_CENTER);
  connect(folderButton, "clicked", [this] { chooseFolder(); });
  for (const auto* style : {"dim-label", "caption"}) gtk_widget_add_css_class(previewNote, style);
  auto* line = makeBox(GTK_ORIENTATION_HORIZONTAL, gap);
  gtk_box_append(GTK_BOX(line), previewName);
  gtk_box_append(GTK_BOX(line), folderButton);
  auto* column = makeBox(GTK_ORIENTATION_VERTICAL, smallGap);
  gtk_widget_add_css_class(column, "sprig-note");
  gtk_box_append(GTK_BOX(column), line);
  gtk_box_append(GTK_BOX(column), previewNote);
  return column;
}

void TemplateEditor::watch(GtkWidget* editable) {
  connect(editable, "changed", [this] { takeIn(); });
}

void TemplateEditor::open(const TemplateKey& key) {
  finish();
  draft.emplace(model, key);
  categories = model.categories();
  isUpdating = true;
  gtk_combo_box_text_remove_all(GTK_COMBO_BOX_TEXT(category));
  for (const auto& known : categories) {
    gtk_combo_box_text_append_text(GTK_COMBO_BOX_TEXT(category), sectionOf(known).c_str());
  }
  show();
  gtk_widget_grab_focus(name);
}

std::optional<TemplateKey> TemplateEditor::finish() {
  if (!draft) return std::nullopt;
  write();
  auto key = draft->key();
  draft.reset();
  return key;
}

void TemplateEditor::update() {
  if (draft && draft->follow()) show();
  if (draft) showBar();
}

void TemplateEditor::show() {
  const auto item = draft->shown();
  isUpdating = true;
  symbol.show(item.icon);
  setText(name, item.name);
  setText(pattern, item.filenamePattern);
  setText(extension, item.extensionName);
  if (categoryIn(textOf(entryOf(category))) != item.category) {
    setText(entryOf(category), sectionOf(item.category));
  }
  gtk_switch_set_active(GTK_SWITCH(asks), item.requiresInput ? TRUE : FALSE);
  gtk_switch_set_active(GTK_SWITCH(favorite), item.favorite ? TRUE : FALSE);
  content.show(item);
  isUpdating = false;
  showBar();
  showPreview();
}

void TemplateEditor::showBar() {
  const auto state = draft->state();
  setVisible(bar, state != TemplateDraft::State::good || !model.isWritable());
  setVisible(barButtons, state == TemplateDraft::State::changedElsewhere);
  gtk_widget_set_sensitive(form, state != TemplateDraft::State::gone && model.isWritable() ? TRUE : FALSE);
  std::string said = translated("The configuration is read-only.");
  if (state == TemplateDraft::State::changedElsewhere)
    said = translated("This template was changed elsewhere, too.");
  if (state == TemplateDraft::State::gone) said = translated("This template was removed elsewhere.");
  gtk_label_set_text(GTK_LABEL(barText), said.c_str());
}

void TemplateEditor::showPreview() {
  auto preview = previewOf(draft->item(), folder);
  const auto filename = text::toValidUTF8(preview.filename);
  gtk_label_set_text(GTK_LABEL(previewName),
                     translated("The next file: “%1%”", {shownText(filename)}).c_str());
  const auto place = text::toValidUTF8(folder.lastPathComponent());
  gtk_button_set_label(GTK_BUTTON(folderButton), translated("in %1%", {place}).c_str());
  const auto note = dialog::noteOn(filename);
  gtk_label_set_text(GTK_LABEL(previewNote), note.text.c_str());
  setVisible(previewNote, !note.text.empty());
  if (!preview.hasOwnBytes) preview.content = shownText(preview.content);
  content.showPreview(preview);
}

/// What stands for a section in the file; the text itself for a section of the user's own.
std::string TemplateEditor::categoryIn(const std::string& text) const {
  auto current = draft ? draft->shown().category : std::string();
  if (draft && sectionOf(current) == text) return current;
  for (const auto& known : categories) {
    if (sectionOf(known) == text) return known;
  }
  return text;
}

/// Files that were called like their template stay so while its name is typed.
void TemplateEditor::followName(const TemplateItem& before) {
  if (before.filenamePattern != before.name || textOf(pattern) != before.name) return;
  isUpdating = true;
  setText(pattern, textOf(name));
  isUpdating = false;
}

void TemplateEditor::takeIn() {
  if (isUpdating || !draft) return;
  auto item = draft->shown();
  followName(item);
  item.icon = symbol.symbol();
  item.name = textOf(name);
  item.filenamePattern = textOf(pattern);
  item.extensionName = textOf(extension);
  item.category = categoryIn(textOf(entryOf(category)));
  item.requiresInput = gtk_switch_get_active(GTK_SWITCH(asks)) != FALSE;
  item.favorite = gtk_switch_get_active(GTK_SWITCH(favorite)) != FALSE;
  content.store(item);
  draft->editShown(item);
  showPreview();
  writing.start(pause);
}

void TemplateEditor::write() {
  writing.stop();
  draft->write();
  showBar();
}

void TemplateEditor::chooseFolder() {
  chooseInDialog(page, translated("Try It in a Folder"), GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER, "",
                 [this](GFile* file) {
                   const wire::TextPointer path(g_file_get_path(file));
                   if (!path || !draft) return;
                   folder = platform::FileURL(path.get());
                   showPreview();
                 });
}

void TemplateEditor::insertInPattern(const std::string& token) {
  auto* editable = GTK_EDITABLE(pattern);
  gtk_editable_delete_selection(editable);
  int position = gtk_editable_get_position(editable);
  gtk_editable_insert_text(editable, token.c_str(), -1, &position);
  // Without all of it selected.
  gtk_widget_grab_focus(pattern);
  gtk_editable_select_region(editable, position, position);
}

}  // namespace sprig::settings

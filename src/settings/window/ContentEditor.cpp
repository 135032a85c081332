// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/ContentEditor.h"

#include <utility>

#include "create/Base64.h"
#include "platform/Platform.h"
#include "settings/window/ContentKind.h"
#include "settings/window/FileChooser.h"
#include "settings/window/PlaceholderButton.h"
#include "settings/window/Widgets.h"
#include "text/Text.h"
#include "translation/translated.h"
#include "wire/Pointers.h"

namespace sprig::settings {

namespace {

constexpr int contentHeight = 190;              // pixels
constexpr std::size_t largestFile = 8'000'000;  // bytes
/// A longer text isn't searched for placeholders with each key.
constexpr int maxHighlighted = 100'000;  // characters

constexpr const char* textPage = "text";
constexpr const char* previewPage = "preview";
constexpr const char* filePage = "file";

}  // namespace

ContentEditor::ContentEditor(Handlers editorHandlers)
    : handlers(std::move(editorHandlers)),
      box(makeBox(GTK_ORIENTATION_VERTICAL, smallGap)),
      switcher(gtk_stack_switcher_new()),
      insertButton(
          makePlaceholderButton(placeholdersOfContents(), [this](const auto& token) { insert(token); })),
      fileButton(gtk_button_new_with_label(translated("Use a File…"))),
      stack(gtk_stack_new()),
      text(makeTextView(translated("Content"))),
      preview(makeTextView(translated("Preview"))),
      kindIcon(makeDecoration(nullptr)),
      kind(gtk_label_new("")),
      placeholderTag(gtk_text_buffer_create_tag(gtk_text_view_get_buffer(GTK_TEXT_VIEW(text)), nullptr,
                                                "weight", PANGO_WEIGHT_BOLD, "foreground", "#3584e4",
                                                nullptr)) {
  makeHeader();
  makeText();
  gtk_stack_add_named(GTK_STACK(stack), makeFilePage(), filePage);
  hideOtherPages(GTK_STACK(stack));
  gtk_box_append(GTK_BOX(box), stack);
  connect(fileButton, "clicked", [this] { chooseFile(); });
}

void ContentEditor::makeHeader() {
  auto* title = makeLabel(translated("Content"));
  gtk_widget_add_css_class(title, "heading");
  gtk_widget_set_hexpand(title, TRUE);
  auto* row = makeBox(GTK_ORIENTATION_HORIZONTAL, smallGap);
  for (auto* part : {title, switcher, insertButton, fileButton}) gtk_box_append(GTK_BOX(row), part);
  gtk_box_append(GTK_BOX(box), row);
  gtk_stack_switcher_set_stack(GTK_STACK_SWITCHER(switcher), GTK_STACK(stack));
}

void ContentEditor::makeText() {
  gtk_text_view_set_editable(GTK_TEXT_VIEW(preview), FALSE);
  gtk_stack_add_titled(GTK_STACK(stack), makeTextFrame(text, contentHeight), textPage, translated("Text"));
  gtk_stack_add_titled(GTK_STACK(stack), makeTextFrame(preview, contentHeight), previewPage,
                       translated("Preview"));
  connect(gtk_text_view_get_buffer(GTK_TEXT_VIEW(text)), "changed", [this] {
    highlight();
    if (!isUpdating) handlers.changed();
  });
}

GtkWidget* ContentEditor::makeFilePage() {
  gtk_image_set_pixel_size(GTK_IMAGE(kindIcon), 48);
  gtk_label_set_wrap(GTK_LABEL(kind), TRUE);
  auto* replace = gtk_button_new_with_label(translated("Replace from File…"));
  auto* save = gtk_button_new_with_label(translated("Save to File…"));
  auto* useTextButton = gtk_button_new_with_label(translated("Use a Text"));
  connect(replace, "clicked", [this] { chooseFile(); });
  connect(save, "clicked", [this] { chooseTarget(); });
  connect(useTextButton, "clicked", [this] { useText(); });
  auto* buttons = makeBox(GTK_ORIENTATION_HORIZONTAL, smallGap);
  gtk_widget_set_halign(buttons, GTK_ALIGN_CENTER);
  for (auto* button : {replace, save, useTextButton}) gtk_box_append(GTK_BOX(buttons), button);
  auto* column = makeBox(GTK_ORIENTATION_VERTICAL, gap);
  gtk_widget_set_valign(column, GTK_ALIGN_CENTER);
  setMargins(column, pageMargin, pageMargin);
  for (auto* part : {kindIcon, kind, buttons}) gtk_box_append(GTK_BOX(column), part);
  return column;
}

void ContentEditor::show(const TemplateItem& item) {
  isUpdating = true;
  shown = item;
  setTextIn(text, item.content);
  update();
  isUpdating = false;
}

/// Which page, and what goes with it.
void ContentEditor::update() {
  const bool isFile = ownBytes(shown).has_value();
  setVisible(switcher, !isFile);
  setVisible(insertButton, !isFile);
  setVisible(fileButton, !isFile);
  const std::string page = gtk_stack_get_visible_child_name(GTK_STACK(stack));
  if (isFile != (page == filePage))
    gtk_stack_set_visible_child_name(GTK_STACK(stack), isFile ? filePage : textPage);
}

void ContentEditor::showPreview(const TemplatePreview& newPreview) {
  if (newPreview.hasOwnBytes) return showKind(newPreview.filename);
  setTextIn(preview, text::toValidUTF8(newPreview.content));
}

void ContentEditor::showKind(const std::string& filename) {
  const auto found = kindOf(filename, ownBytes(shown).value_or(""));
  gtk_image_set_from_gicon(GTK_IMAGE(kindIcon), found.icon.get());
  gtk_label_set_text(GTK_LABEL(kind), found.text.c_str());
}

void ContentEditor::store(TemplateItem& item) const {
  item.content = textIn(gtk_text_view_get_buffer(GTK_TEXT_VIEW(text)));
  item.contentBase64 = shown.contentBase64;
}

void ContentEditor::highlight() {
  auto* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(text));
  GtkTextIter begin;
  GtkTextIter end;
  gtk_text_buffer_get_bounds(buffer, &begin, &end);
  gtk_text_buffer_remove_tag(buffer, placeholderTag, &begin, &end);
  if (gtk_text_buffer_get_char_count(buffer) > maxHighlighted) return;
  for (const auto& placeholder : placeholdersOfContents()) {
    GtkTextIter from = begin;
    GtkTextIter first;
    GtkTextIter last;
    const std::string token(placeholder.token);
    while (gtk_text_iter_forward_search(&from, token.c_str(), GTK_TEXT_SEARCH_TEXT_ONLY, &first, &last,
                                        nullptr) != FALSE) {
      gtk_text_buffer_apply_tag(buffer, placeholderTag, &first, &last);
      from = last;
    }
  }
}

void ContentEditor::insert(const std::string& token) {
  gtk_stack_set_visible_child_name(GTK_STACK(stack), textPage);
  auto* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(text));
  gtk_text_buffer_delete_selection(buffer, TRUE, TRUE);
  gtk_text_buffer_insert_at_cursor(buffer, token.c_str(), -1);
  gtk_widget_grab_focus(text);
}

void ContentEditor::chooseFile() {
  chooseInDialog(box, translated("Use a File"), GTK_FILE_CHOOSER_ACTION_OPEN, "",
                 [this](GFile* file) { replaceFrom(file); });
}

void ContentEditor::replaceFrom(GFile* file) {
  const wire::TextPointer path(g_file_get_path(file));
  if (!path) return handlers.failed(translated("Only files on this computer can be used."));
  const auto bytes = platform::current().files.contentsOfFile(platform::FileURL(path.get()));
  if (!bytes) return handlers.failed(translated("The file can’t be read: %1%.", {bytes.error().description}));
  if (bytes->empty()) return handlers.failed(translated("The file is empty."));
  if (bytes->size() > largestFile) return handlers.failed(translated("The file is larger than 8 MB."));
  shown.contentBase64 = encodeBase64(*bytes);
  update();
  handlers.changed();
}

void ContentEditor::chooseTarget() {
  chooseInDialog(box, translated("Save to File"), GTK_FILE_CHOOSER_ACTION_SAVE,
                 shown.name + shown.extensionName, [this](GFile* file) { saveTo(file); });
}

void ContentEditor::saveTo(GFile* file) {
  const auto bytes = ownBytes(shown).value_or("");
  GError* error = nullptr;
  g_file_replace_contents(file, bytes.data(), bytes.size(), nullptr, FALSE, G_FILE_CREATE_NONE, nullptr,
                          nullptr, &error);
  const wire::ErrorPointer owned(error);
  if (owned) handlers.failed(translated("The file can’t be saved: %1%.", {owned->message}));
}

void ContentEditor::useText() {
  shown.contentBase64.reset();
  update();
  handlers.changed();
  gtk_widget_grab_focus(text);
}

}  // namespace sprig::settings

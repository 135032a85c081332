// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/ImportPage.h"

#include <algorithm>
#include <utility>

#include "finder/TemplateCategories.h"
#include "settings/TemplateDraft.h"
#include "settings/TemplatePreview.h"
#include "settings/window/ContentKind.h"
#include "settings/window/Widgets.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig::settings {

namespace {

constexpr int listHeight = 180;     // pixels
constexpr int contentHeight = 150;  // pixels
/// No more of a content is shown.
constexpr std::size_t maxShown = 20'000;  // bytes

std::string filenameOf(const TemplateItem& item) {
  const auto& pattern = item.filenamePattern;
  return pattern.ends_with(item.extensionName) ? pattern : pattern + item.extensionName;
}

std::string kindOfContent(const TemplateItem& item) {
  return kindOf(filenameOf(item), ownBytes(item).value_or(item.content)).text;
}

bool isChecked(GtkWidget* check) { return gtk_check_button_get_active(GTK_CHECK_BUTTON(check)) != FALSE; }

void setChecked(GtkWidget* check, bool isOn) {
  gtk_check_button_set_active(GTK_CHECK_BUTTON(check), isOn ? TRUE : FALSE);
}

}  // namespace

ImportPage::ImportPage(SettingsModel& settingsModel, std::function<void(std::size_t)> whenAdded)
    : model(settingsModel),
      added(std::move(whenAdded)),
      page(makeBox(GTK_ORIENTATION_VERTICAL, gap)),
      title(makeText("")),
      skipped(gtk_menu_button_new()),
      skippedText(makeText("")),
      all(gtk_check_button_new_with_label(translated("All"))),
      list(makeCard()),
      contentTitle(makeText("")),
      content(makeTextView(translated("Content"))),
      addButton(gtk_button_new()) {
  setMargins(page, pageMargin, pageMargin);
  gtk_widget_add_css_class(title, "title-3");
  gtk_widget_add_css_class(contentTitle, "heading");
  gtk_widget_add_css_class(addButton, "suggested-action");
  gtk_widget_set_halign(addButton, GTK_ALIGN_END);
  gtk_widget_set_margin_start(all, gap);
  gtk_text_view_set_editable(GTK_TEXT_VIEW(content), FALSE);
  setAccessibleName(list, translated("Templates to Add"));
  gtk_widget_set_valign(list, GTK_ALIGN_START);
  auto* scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), list);
  gtk_scrolled_window_set_min_content_height(GTK_SCROLLED_WINDOW(scroller), listHeight);
  gtk_widget_set_vexpand(scroller, TRUE);
  for (auto* part :
       {title, all, scroller, skipped, contentTitle, makeTextFrame(content, contentHeight), addButton})
    gtk_box_append(GTK_BOX(page), part);
  g_signal_connect(list, "row-activated", G_CALLBACK(+[](GtkListBox*, GtkListBoxRow* row, ImportPage* self) {
                     auto* check = self->checks[static_cast<std::size_t>(gtk_list_box_row_get_index(row))];
                     setChecked(check, !isChecked(check));
                   }),
                   this);
  addShortcut(list, "Up", [this] { return step(-1); });
  addShortcut(list, "Down", [this] { return step(1); });
  connect(addButton, "clicked", [this] { add(); });
  makeAllButton();
  makeSkipped();
}

/// As many lines as there are files.
void ImportPage::makeSkipped() {
  auto* scroller = gtk_scrolled_window_new();
  gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
  gtk_scrolled_window_set_propagate_natural_height(GTK_SCROLLED_WINDOW(scroller), TRUE);
  gtk_scrolled_window_set_max_content_height(GTK_SCROLLED_WINDOW(scroller), listHeight);
  gtk_scrolled_window_set_child(GTK_SCROLLED_WINDOW(scroller), skippedText);
  auto* popover = gtk_popover_new();
  gtk_popover_set_child(GTK_POPOVER(popover), scroller);
  gtk_menu_button_set_popover(GTK_MENU_BUTTON(skipped), popover);
  gtk_menu_button_set_has_frame(GTK_MENU_BUTTON(skipped), FALSE);
  gtk_widget_set_halign(skipped, GTK_ALIGN_START);
}

void ImportPage::makeAllButton() {
  connect(all, "toggled", [this] {
    if (isUpdating) return;
    const bool isOn = isChecked(all);
    isUpdating = true;
    for (auto* check : checks) setChecked(check, isOn);
    isUpdating = false;
    showChosen();
  });
}

void ImportPage::show(TemplateImport newOffer) {
  offer = std::move(newOffer);
  while (auto* row = gtk_list_box_get_row_at_index(GTK_LIST_BOX(list), 0))
    gtk_list_box_remove(GTK_LIST_BOX(list), GTK_WIDGET(row));
  checks.clear();
  const auto count = offer->entries().size();
  for (std::size_t place = 0; place < count; ++place) gtk_list_box_append(GTK_LIST_BOX(list), makeRow(place));
  gtk_label_set_text(GTK_LABEL(title),
                     translatedCount("%1% template to add", "%1% templates to add", count).c_str());
  setVisible(all, count > 1);
  showSkipped();
  showChosen();
  showContent(0);
  gtk_widget_grab_focus(checks.front());
}

GtkWidget* ImportPage::makeRow(std::size_t place) {
  const auto& entry = offer->entries()[place];
  auto* check = gtk_check_button_new();
  setChecked(check, entry.outcome != ImportOutcome::unchanged);
  setAccessibleName(check, entry.item.name);
  setAccessibleDescription(check, kindOfContent(entry.item));
  checks.push_back(check);
  connect(check, "toggled", [this, place] {
    // All at once are not looked at.
    if (isUpdating) return;
    showChosen();
    showContent(place);
  });
  auto* focus = gtk_event_controller_focus_new();
  connect(focus, "enter", [this, place] { showContent(place); });
  gtk_widget_add_controller(check, focus);
  auto* line = makeBox(GTK_ORIENTATION_HORIZONTAL, gap);
  for (auto* part : {check, makeDecoration(drawableIcon(entry.item.icon).c_str()), makeTexts(entry)})
    gtk_box_append(GTK_BOX(line), part);
  auto* row = gtk_list_box_row_new();
  gtk_list_box_row_set_child(GTK_LIST_BOX_ROW(row), line);
  gtk_widget_set_focusable(row, FALSE);
  return row;
}

GtkWidget* ImportPage::makeTexts(const TemplateImport::Entry& entry) const {
  auto* name = makeLabel(entry.item.name);
  auto* kind = makeLabel(kindOfContent(entry.item));
  for (auto* label : {name, kind}) gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
  for (const auto* style : {"dim-label", "caption"}) gtk_widget_add_css_class(kind, style);
  auto* texts = makeBox(GTK_ORIENTATION_VERTICAL, 0);
  gtk_widget_set_hexpand(texts, TRUE);
  gtk_box_append(GTK_BOX(texts), name);
  gtk_box_append(GTK_BOX(texts), kind);
  auto where = sectionTitle(categoryDisplayName(entry.item.category));
  if (entry.outcome == ImportOutcome::updated) where = translated("Has changed since it was imported");
  if (entry.outcome == ImportOutcome::unchanged) where = translated("Is here already");
  auto* section = makeLabel(where);
  gtk_widget_add_css_class(section, "dim-label");
  auto* line = makeBox(GTK_ORIENTATION_HORIZONTAL, gap);
  gtk_widget_set_hexpand(line, TRUE);
  gtk_box_append(GTK_BOX(line), texts);
  gtk_box_append(GTK_BOX(line), section);
  return line;
}

void ImportPage::showSkipped() {
  std::string text;
  for (const auto& sentence : offer->skipped()) text += (text.empty() ? "" : "\n") + sentence;
  gtk_label_set_text(GTK_LABEL(skippedText), text.c_str());
  const auto heading =
      translatedCount("%1% file can’t be taken", "%1% files can’t be taken", offer->skipped().size());
  gtk_menu_button_set_label(GTK_MENU_BUTTON(skipped), heading.c_str());
  setVisible(skipped, !offer->skipped().empty());
}

void ImportPage::showChosen() {
  if (isUpdating) return;
  const auto count = chosen().size();
  isUpdating = true;
  setChecked(all, count == checks.size());
  gtk_check_button_set_inconsistent(GTK_CHECK_BUTTON(all), count > 0 && count < checks.size());
  isUpdating = false;
  const auto label =
      count == 0 ? translated("Add") : translatedCount("Add %1% Template", "Add %1% Templates", count);
  gtk_button_set_label(GTK_BUTTON(addButton), label.c_str());
  gtk_widget_set_sensitive(addButton, count > 0 && model.isWritable() ? TRUE : FALSE);
}

void ImportPage::showContent(std::size_t place) {
  const auto& item = offer->entries()[place].item;
  gtk_label_set_text(GTK_LABEL(contentTitle), text::toValidUTF8(filenameOf(item)).c_str());
  const auto text = item.content.substr(0, maxShown);
  setTextIn(content, ownBytes(item) ? kindOfContent(item) : shownText(text::toValidUTF8(text)));
}

/// To the next check button, from the one that has the keyboard.
bool ImportPage::step(std::ptrdiff_t by) {
  const auto focus = std::find_if(checks.begin(), checks.end(),
                                  [](auto* check) { return gtk_widget_has_focus(check) != FALSE; });
  if (focus == checks.end() || (by < 0 && focus == checks.begin())) return false;
  const auto next = focus + by;
  return next != checks.end() && gtk_widget_grab_focus(*next) != FALSE;
}

void ImportPage::update() {
  if (offer) showChosen();
}

std::vector<std::size_t> ImportPage::chosen() const {
  std::vector<std::size_t> places;
  for (std::size_t place = 0; place < checks.size(); ++place) {
    if (isChecked(checks[place])) places.push_back(place);
  }
  return places;
}

void ImportPage::add() {
  const auto places = chosen();
  if (model.addImported(*offer, places)) added(places.size());
}

}  // namespace sprig::settings

// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/SettingsWindow.h"

#include <memory>
#include <string_view>
#include <utility>

#include "dialog/WindowPlace.h"
#include "import/TemplateExchange.h"
#include "platform/Platform.h"
#include "settings/window/FileChooser.h"
#include "settings/window/Widgets.h"
#include "settings/window/WindowSize.h"
#include "text/Text.h"
#include "translation/translated.h"
#include "wire/Pointers.h"

namespace sprig::settings {

namespace {

constexpr int defaultWidth = 700;
constexpr int defaultHeight = 720;

constexpr const char* listPage = "templates";
constexpr const char* settingsPage = "settings";
constexpr const char* editorPage = "editor";
constexpr const char* textPage = "text";
constexpr const char* importPage = "import";

constexpr const char* switcherTitle = "switcher";
constexpr const char* plainTitle = "plain";

}  // namespace

SettingsWindow::SettingsWindow(SettingsModel& settingsModel, std::function<void()> whenClosed)
    : model(settingsModel),
      closed(std::move(whenClosed)),
      window(GTK_WINDOW(gtk_window_new())),
      stack(gtk_stack_new()),
      titles(gtk_stack_new()),
      title(gtk_label_new("")),
      backButton(makeIconButton("go-previous-symbolic", translated("Back"))),
      newButton(makeIconButton("list-add-symbolic", translated("New Template"))),
      searchButton(makeIconButton("edit-find-symbolic", translated("Search"))),
      menuButton(makeMenuButton()),
      overlay(gtk_overlay_new()),
      toast(GTK_OVERLAY(overlay)),
      list(model, {[this](const TemplateKey& key) { edit(key); },
                   [this](const std::string& name) {
                     toast.show(translated("Removed “%1%”", {name}), translated("Undo"), [this] { undo(); });
                   }}) {
  gtk_window_set_title(window, translated("Sprig Settings"));
  gtk_window_set_icon_name(window, "com.kestrel.Sprig");
  restoreSize(window, defaultWidth, defaultHeight);
  gtk_window_set_titlebar(window, makeTitleBar());
  addPages();
  addShortcuts();
  acceptFiles();
  connectDeciding(window, "close-request", [this] {
    if (!isHeld([this] { close(); })) close();
    return true;
  });
  connect(stack, "notify::visible-child", [this] { update(); });
  model.onChange([this] { update(); });
  model.onFailure([this](const std::string& failure) { toast.show(failure); });
  update();
  list.focusFirst();
}

SettingsWindow::~SettingsWindow() { gtk_window_destroy(window); }

void SettingsWindow::close() {
  if (editor) editor->finish();
  rememberSize(window);
  model.onChange({});
  model.onFailure({});
  setVisible(GTK_WIDGET(window), false);
  closed();
}

GtkWidget* SettingsWindow::makeTitleBar() {
  auto* switcher = gtk_stack_switcher_new();
  gtk_stack_switcher_set_stack(GTK_STACK_SWITCHER(switcher), GTK_STACK(stack));
  gtk_widget_add_css_class(title, "title");
  gtk_label_set_ellipsize(GTK_LABEL(title), PANGO_ELLIPSIZE_END);
  gtk_stack_add_named(GTK_STACK(titles), switcher, switcherTitle);
  gtk_stack_add_named(GTK_STACK(titles), title, plainTitle);
  hideOtherPages(GTK_STACK(titles));
  auto* bar = gtk_header_bar_new();
  gtk_header_bar_set_title_widget(GTK_HEADER_BAR(bar), titles);
  gtk_header_bar_pack_start(GTK_HEADER_BAR(bar), backButton);
  gtk_header_bar_pack_start(GTK_HEADER_BAR(bar), newButton);
  gtk_header_bar_pack_end(GTK_HEADER_BAR(bar), menuButton);
  gtk_header_bar_pack_end(GTK_HEADER_BAR(bar), searchButton);
  connect(backButton, "clicked", [this] { leave(); });
  connect(newButton, "clicked", [this] { list.addNew(); });
  connect(searchButton, "clicked", [this] { list.beginSearch(); });
  return bar;
}

GtkWidget* SettingsWindow::makeMenuButton() {
  auto* button = gtk_menu_button_new();
  gtk_menu_button_set_icon_name(GTK_MENU_BUTTON(button), "open-menu-symbolic");
  gtk_widget_set_tooltip_text(button, translated("Menu"));
  setAccessibleName(button, translated("Menu"));
  const std::pair<const char*, void (SettingsWindow::*)()> items[] = {
      {"file", &SettingsWindow::chooseFile}, {"import", &SettingsWindow::importFolder},
      {"text", &SettingsWindow::editText},   {"undo", &SettingsWindow::undo},
      {"redo", &SettingsWindow::redo},       {"about", &SettingsWindow::showAbout}};
  const wire::ObjectPointer<GSimpleActionGroup> group(g_simple_action_group_new());
  for (const auto& [name, perform] : items) {
    const wire::ObjectPointer<GSimpleAction> action(g_simple_action_new(name, nullptr));
    connect(action.get(), "activate", [this, run = perform] { (this->*run)(); });
    g_action_map_add_action(G_ACTION_MAP(group.get()), G_ACTION(action.get()));
  }
  gtk_widget_insert_action_group(GTK_WIDGET(window), "win", G_ACTION_GROUP(group.get()));
  const wire::ObjectPointer<GMenu> menu(g_menu_new());
  const wire::ObjectPointer<GMenu> news(g_menu_new());
  g_menu_append(news.get(), translated("New from _File…"), "win.file");
  g_menu_append(news.get(), translated("_Import Templates Folder…"), "win.import");
  g_menu_append_section(menu.get(), nullptr, G_MENU_MODEL(news.get()));
  const wire::ObjectPointer<GMenu> edits(g_menu_new());
  g_menu_append(edits.get(), translated("_Undo"), "win.undo");
  g_menu_append(edits.get(), translated("_Redo"), "win.redo");
  g_menu_append(edits.get(), translated("_Edit as Text"), "win.text");
  g_menu_append_section(menu.get(), nullptr, G_MENU_MODEL(edits.get()));
  const wire::ObjectPointer<GMenu> about(g_menu_new());
  g_menu_append(about.get(), translated("_About Sprig"), "win.about");
  g_menu_append_section(menu.get(), nullptr, G_MENU_MODEL(about.get()));
  gtk_menu_button_set_menu_model(GTK_MENU_BUTTON(button), G_MENU_MODEL(menu.get()));
  return button;
}

void SettingsWindow::addPages() {
  gtk_stack_add_titled(GTK_STACK(stack), list.widget(), listPage, translated("Templates"));
  // The others are made when they are first shown.
  gtk_stack_add_titled(GTK_STACK(stack), makeBox(GTK_ORIENTATION_VERTICAL, 0), settingsPage,
                       translated("Settings"));
  for (const auto* name : {editorPage, textPage, importPage})
    gtk_stack_add_named(GTK_STACK(stack), makeBox(GTK_ORIENTATION_VERTICAL, 0), name);
  hideOtherPages(GTK_STACK(stack));
  gtk_stack_set_transition_type(GTK_STACK(stack), GTK_STACK_TRANSITION_TYPE_CROSSFADE);
  gtk_overlay_set_child(GTK_OVERLAY(overlay), stack);
  gtk_window_set_child(window, overlay);
}

void SettingsWindow::fillPage() {
  const auto tellUser = [this](const std::string& message) { toast.show(message); };
  auto* page = GTK_BOX(gtk_stack_get_visible_child(GTK_STACK(stack)));
  if (isOn(settingsPage) && !menuSettings) gtk_box_append(page, menuSettings.emplace(model).widget());
  if (isOn(editorPage) && !editor) gtk_box_append(page, editor.emplace(model, tellUser).widget());
  if (isOn(textPage) && !text) gtk_box_append(page, text.emplace(model, tellUser).widget());
  if (isOn(importPage) && !imports) {
    const auto whenAdded = [this](std::size_t count) {
      showPage(listPage);
      list.focusNews();
      toast.show(translatedCount("Added a template", "Added %1% templates", count), translated("Undo"),
                 [this] { undo(); });
    };
    gtk_box_append(page, imports.emplace(model, whenAdded).widget());
  }
}

void SettingsWindow::addShortcuts() {
  addShortcut("<Control>n", [this] {
    if (isOn(listPage)) list.addNew();
  });
  addShortcut("<Control>o", [this] { chooseFile(); });
  addShortcut("<Control>f", [this] {
    if (isOn(listPage)) list.beginSearch();
  });
  addShortcut("<Control>z", [this] { undo(); });
  addShortcut("<Control><Shift>z", [this] { redo(); });
  addShortcut("<Control>w", [this] { gtk_window_close(window); });
  for (const auto* keys : {"Escape", "<Alt>Left"}) addShortcut(keys, [this] { leave(); });
}

void SettingsWindow::addShortcut(const char* keys, std::function<void()> perform) {
  settings::addShortcut(GTK_WIDGET(window), keys, [perform = std::move(perform)] {
    perform();
    return true;
  });
}

void SettingsWindow::update() {
  // Mended elsewhere while the user types, who goes on with it.
  if (!model.fault() && text && isOn(textPage) && text->isTyped()) isEditingText = true;
  if (const bool isText = model.fault() || isEditingText; isText != isOn(textPage)) {
    // What was not written yet can't be any more.
    if (model.fault() && editor) editor->finish();
    // It would lie over the buttons.
    toast.hide();
    return showPage(isText ? textPage : listPage);
  }
  fillPage();
  list.update();
  if (menuSettings) menuSettings->update();
  if (editor) editor->update();
  if (text && isOn(textPage)) text->update();
  if (imports) imports->update();
  updateTitleBar();
}

void SettingsWindow::updateTitleBar() {
  const bool isList = isOn(listPage);
  const bool isSwitching = isList || isOn(settingsPage);
  const char* name = translated("Sprig Settings");
  if (isOn(editorPage)) name = translated("Edit Template");
  if (isOn(importPage)) name = translated("Add Templates");
  if (isEditingText) name = translated("Edit as Text");
  gtk_stack_set_visible_child_name(GTK_STACK(titles), isSwitching ? switcherTitle : plainTitle);
  gtk_label_set_text(GTK_LABEL(title), name);
  setVisible(backButton, !isSwitching && !model.fault());
  setVisible(newButton, isList);
  setVisible(searchButton, isList);
  gtk_widget_set_sensitive(newButton, model.isWritable() ? TRUE : FALSE);
}

void SettingsWindow::showPage(const char* name) { gtk_stack_set_visible_child_name(GTK_STACK(stack), name); }

bool SettingsWindow::isOn(const char* name) const {
  const char* visible = gtk_stack_get_visible_child_name(GTK_STACK(stack));
  return visible != nullptr && std::string_view(visible) == name;
}

void SettingsWindow::present(const std::string& activationToken) {
  dialog::takeFocusWith(window, activationToken);
  gtk_window_present(window);
}

void SettingsWindow::show(const SettingsTarget& target) {
  if (model.fault()) return;
  if (!target.templateId) {
    leave();
    if (isOn(settingsPage)) showPage(listPage);
  } else if (model.find({*target.templateId, 0}) != nullptr) {
    edit({*target.templateId, 0});
  }
}

void SettingsWindow::edit(const TemplateKey& key) {
  if (isHeld([this, key] { edit(key); })) return;
  toast.hide();
  isEditingText = false;
  showPage(editorPage);
  editor->open(key);
}

/// What was edited would be lost; `discard` goes on all the same, if the user wants that.
bool SettingsWindow::isHeld(const std::function<void()>& discard) {
  if (editor && editor->isAsking()) {
    toast.show(translated("Choose “Reload” or “Keep Mine” first."));
    return true;
  }
  if (!text || !isOn(textPage) || !text->isTyped()) return false;
  toast.show(translated("What you typed is not saved."), translated("Discard"), [this, discard] {
    text->reload();
    discard();
  });
  return true;
}

void SettingsWindow::leave() {
  if (isOn(listPage) || isOn(settingsPage) || model.fault()) return;
  if (isHeld([this] { leave(); })) return;
  toast.hide();
  const auto key = editor ? editor->finish() : std::nullopt;
  isEditingText = false;
  showPage(listPage);
  if (key) list.focus(*key);
}

void SettingsWindow::editText() {
  if (!isOn(listPage) && !isOn(settingsPage)) return;
  toast.hide();
  isEditingText = true;
  showPage(textPage);
}

void SettingsWindow::undo() {
  if (!isOn(listPage) && !isOn(settingsPage)) return;
  const auto undone = model.undoable();
  if (!undone || !model.undo()) return;
  toast.show(translated("Undone: %1%", {*undone}));
  if (isOn(listPage)) list.focusNews();
}

void SettingsWindow::redo() {
  if (isOn(listPage) || isOn(settingsPage)) model.redo();
}

void SettingsWindow::chooseFile() {
  if (!isOn(listPage) || !model.isWritable()) return;
  chooseInDialog(stack, translated("New from File"), GTK_FILE_CHOOSER_ACTION_OPEN, "", [this](GFile* file) {
    const wire::TextPointer path(g_file_get_path(file));
    if (path) return open({platform::FileURL(path.get())});
    toast.show(translated("Only files on this computer can be used."));
  });
}

/// Files that are dropped on the list become templates.
void SettingsWindow::acceptFiles() {
  auto* target = gtk_drop_target_new(GDK_TYPE_FILE_LIST, GDK_ACTION_COPY);
  g_signal_connect(target, "drop",
                   G_CALLBACK(+[](GtkDropTarget*, const GValue* value, double, double, SettingsWindow* self) {
                     std::vector<platform::FileURL> files;
                     for (auto* item = static_cast<GSList*>(g_value_get_boxed(value)); item;
                          item = item->next) {
                       const wire::TextPointer path(g_file_get_path(static_cast<GFile*>(item->data)));
                       if (path) files.emplace_back(path.get());
                     }
                     self->open(files);
                     return static_cast<gboolean>(!files.empty());
                   }),
                   this);
  gtk_widget_add_controller(list.widget(), GTK_EVENT_CONTROLLER(target));
}

void SettingsWindow::importFolder() {
  if (!isOn(listPage) || !model.isWritable()) return;
  const auto usual = platform::current().files.templatesDirectory();
  chooseInDialog(stack, translated("Import Templates Folder"), GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER,
                 usual ? usual->path() : "", [this](GFile* file) {
                   const wire::TextPointer path(g_file_get_path(file));
                   if (!path) return toast.show(translated("Only folders on this computer can be used."));
                   const platform::FileURL folder(path.get());
                   offer(model.templatesIn(folder),
                         translated("“%1%” has nothing that can become a template.",
                                    {text::toValidUTF8(folder.lastPathComponent())}));
                 });
}

void SettingsWindow::open(const std::vector<platform::FileURL>& files) {
  if (model.fault()) return toast.show(translated("The configuration has to be mended first."));
  std::vector<platform::FileURL> shared;
  std::vector<platform::FileURL> others;
  for (const auto& file : files)
    (file.path().ends_with(sharedTemplatesSuffix) ? shared : others).push_back(file);
  if (!others.empty() && model.addFiles(others)) list.focusNews();
  if (!shared.empty())
    offer(TemplateImport::fromSharedFiles(shared), translated("There are no templates in the file."));
}

/// Or says why there is nothing to choose from.
void SettingsWindow::offer(TemplateImport found, const std::string& otherwise) {
  const auto kept = std::make_shared<TemplateImport>(std::move(found));
  if (isHeld([this, kept, otherwise] { offer(*kept, otherwise); })) return;
  const auto& skipped = kept->skipped();
  if (kept->entries().empty()) return toast.show(skipped.empty() ? otherwise : skipped.front());
  if (editor) editor->finish();
  toast.hide();
  isEditingText = false;
  showPage(importPage);
  imports->show(std::move(*kept));
}

void SettingsWindow::showAbout() {
  gtk_show_about_dialog(window, "program-name", "Sprig", "logo-icon-name", "com.kestrel.Sprig", "version",
                        SPRIG_VERSION, "comments",
                        translated("New files from templates, where you are working"), nullptr);
}

}  // namespace sprig::settings

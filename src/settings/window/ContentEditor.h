// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

#include "config/AppConfigItem.h"
#include "settings/TemplatePreview.h"

namespace sprig::settings {

/// Where a template's content is edited: a text with its preview, or bytes that are shown as what they are.
///
/// Threads:   main thread. Ownership: its widgets belong to their parent, which this must not outlive.
class ContentEditor {
 public:
  struct Handlers {
    std::function<void()> changed;
    std::function<void(const std::string&)> failed;
  };
  explicit ContentEditor(Handlers editorHandlers);
  ContentEditor(const ContentEditor&) = delete;
  ContentEditor& operator=(const ContentEditor&) = delete;

  GtkWidget* widget() const { return box; }
  void show(const TemplateItem& item);
  void showPreview(const TemplatePreview& preview);
  /// Puts what is edited into a template.
  void store(TemplateItem& item) const;

 private:
  void makeHeader();
  void makeText();
  GtkWidget* makeFilePage();
  void highlight();
  void insert(const std::string& token);
  void chooseFile();
  void replaceFrom(GFile* file);
  void chooseTarget();
  void saveTo(GFile* file);
  void useText();
  void showKind(const std::string& filename);
  void update();

  const Handlers handlers;
  GtkWidget* const box;
  GtkWidget* const switcher;
  GtkWidget* const insertButton;
  GtkWidget* const fileButton;
  GtkWidget* const stack;
  GtkWidget* const text;
  GtkWidget* const preview;
  GtkWidget* const kindIcon;
  GtkWidget* const kind;
  GtkTextTag* const placeholderTag;
  TemplateItem shown;
  bool isUpdating = false;
};

}  // namespace sprig::settings

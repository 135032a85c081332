// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

#include "filemanagers/client/FileSelection.h"
#include "filemanagers/gtk3/FileObjects.h"

namespace sprig::filemanagers {

/// Whether a widget is what Nemo and Caja show icons in, also as a compact list, and on the desktop.
bool isIconContainer(GtkWidget* widget);

/// Notices which of the icons that are new in such a widget is that of a file, so that nobody needs to look
/// for it among all the others; and when no more are added for a while, after which it may be there
/// unnoticed.
class NewIcon {
 public:
  /// `appeared` is called when it is there, or may be.
  NewIcon(GtkWidget* container, const FileObjects& fileObjects, std::string fileUri,
          std::function<void()> appeared);
  ~NewIcon();
  NewIcon(const NewIcon&) = delete;
  NewIcon& operator=(const NewIcon&) = delete;

  /// Null until it is there.
  AtkObject* accessible() const { return icon.get(); }
  GtkWidget* widget() const { return container.get(); }

 private:
  static void childAdded(AtkObject* parent, guint index, void* child, void* self) noexcept;
  static void iconAdded(GtkWidget* widget, void* file, void* self) noexcept;
  void awaitOthers();
  static gboolean allAdded(void* self) noexcept;

  const wire::ObjectPointer<GtkWidget> container;
  const wire::ObjectPointer<AtkObject> parent;
  const FileObjects objects;
  const std::string uri;
  const std::function<void()> tell;
  wire::ObjectPointer<AtkObject> lastChild;
  wire::ObjectPointer<AtkObject> icon;
  guint others = 0;
};

/// Selects a file in such a widget by way of what it tells a screen reader, scrolls to it and gives it the
/// focus. `icon` is that of the file; null where it must be looked for, which takes long among thousands.
FileSelection::State selectIcon(GtkWidget* container, const FileObjects& objects, const std::string& uri,
                                AtkObject* icon);

}  // namespace sprig::filemanagers

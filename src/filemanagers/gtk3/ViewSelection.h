// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <string>

#include "filemanagers/client/FileSelection.h"

namespace sprig::filemanagers {

/// A file manager's file objects, which the models of its views hold.
struct FileObjects {
  /// The interface that they implement.
  GType type;
  std::string (*uriOf)(void* file);
};

/// Selections in the views of Thunar, Nemo and Caja. None of them has a public interface, so all is found by
/// the names of types, properties and signals, and looked at before it is used: where something is not as
/// known here, the selection is impossible.
NewFileSelection selectionInViews(FileObjects objects);

}  // namespace sprig::filemanagers

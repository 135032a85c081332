// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <glib-object.h>

#include <string>

#include "wire/Pointers.h"

namespace sprig::filemanagers {

/// A file manager's file objects, which its views and their models hold.
struct FileObjects {
  /// The interface that they implement.
  GType type;
  std::string (*uriOf)(void* file);
  /// The only object of a URI; nothing while the file manager has not noticed that file. Null where a file
  /// manager can't be asked.
  wire::ObjectPointer<GObject> (*lookUp)(const char* uri);
};

}  // namespace sprig::filemanagers

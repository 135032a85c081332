// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <glib-object.h>

namespace sprig::filemanagers {

/// A reference to a GObject that knows whether anybody else has one, too. There may be one for each object.
///
/// Threads: main thread.
template <typename Type>
class SharedObject {
 public:
  /// Takes over a reference, which is not a floating one.
  explicit SharedObject(Type* newReference) : object(newReference) {
    g_object_add_toggle_ref(G_OBJECT(object), useChanged, this);
    // Of two references the toggling one stays: it tells when it is the only one, and when no longer.
    g_object_unref(object);
  }
  ~SharedObject() { g_object_remove_toggle_ref(G_OBJECT(object), useChanged, this); }
  SharedObject(const SharedObject&) = delete;
  SharedObject& operator=(const SharedObject&) = delete;

  Type* get() const { return object; }
  bool isShared() const { return hasOthers; }

 private:
  static void useChanged(void* self, GObject* /*object*/, gboolean isOnlyOurs) {
    static_cast<SharedObject*>(self)->hasOthers = isOnlyOurs == FALSE;
  }

  Type* object;
  bool hasOthers = true;
};

}  // namespace sprig::filemanagers

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <glib-object.h>

#include <memory>
#include <vector>

#include "filemanagers/client/ExtensionClient.h"

namespace sprig::filemanagers {

/// A module's object type, of which the file manager makes one object to get menus from.
struct ProviderType {
  struct Interface {
    GType type;
    /// Fills in the functions; of type `GInterfaceInitFunc`.
    void (*fill)(void* functions, void* data);
  };

  const char* name;
  /// The kinds of menu that the file manager can show.
  std::vector<wire::Kind> kinds;
  std::vector<Interface> interfaces;
  /// Makes the file manager ask a provider again; null where it can't.
  void (*menusUpdated)(void* provider);
  /// How the file manager selects a new file; empty where another way of showing it does as well.
  NewFileSelection newSelection = nullptr;
};

/// Registers the type for as long as the process lives, once. Its module has to stay loaded as long (linker
/// option
/// `-z nodelete`).
GType registerProviderType(const ProviderType& type);

/// The way to the extension that belongs to a provider; null when it could not be made.
std::shared_ptr<ExtensionClient> clientOf(void* provider);

}  // namespace sprig::filemanagers

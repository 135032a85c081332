// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/MenuContext.h"

#include "wire/FileUri.h"
#include "wire/Pointers.h"

namespace sprig::desktop {

platform::FileURL locationOf(const char* uri) {
  auto path = wire::pathFromUri(uri);
  if (!path) throw CallError("not the URI of a local file");
  return platform::FileURL(std::move(*path));
}

MenuContext MenuContext::from(GVariant* kind, GVariant* targets) {
  MenuContext context;
  context.kind = static_cast<platform::FIMenuKind>(g_variant_get_uint32(kind));
  if (g_variant_n_children(targets) > 0) {
    const wire::VariantPointer first(g_variant_get_child_value(targets, 0));
    context.target = locationOf(g_variant_get_string(first.get(), nullptr));
  }
  return context;
}

}  // namespace sprig::desktop

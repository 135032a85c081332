#include "ports/desktop/MenuContext.h"

#include <algorithm>

#include "wire/FileUri.h"
#include "wire/Pointers.h"

namespace sprig::desktop {

platform::FileURL locationOf(const char* uri) {
  auto path = wire::pathFromUri(uri);
  if (!path) throw CallError("not the URI of a local file");
  return platform::FileURL(std::move(*path));
}

MenuContext MenuContext::from(GVariant* kind, GVariant* targets) {
  constexpr std::size_t mostTargets = 100;
  MenuContext context;
  context.kind = static_cast<platform::FIMenuKind>(g_variant_get_uint32(kind));
  const auto count = std::min(g_variant_n_children(targets), mostTargets);
  for (std::size_t index = 0; index < count; ++index) {
    const wire::VariantPointer target(g_variant_get_child_value(targets, index));
    context.targets.push_back(locationOf(g_variant_get_string(target.get(), nullptr)));
  }
  return context;
}

}  // namespace sprig::desktop

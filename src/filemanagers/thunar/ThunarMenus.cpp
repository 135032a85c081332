// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/thunar/ThunarMenus.h"

#include <tuple>

#include "filemanagers/gtk3/themedIcon.h"

namespace sprig::filemanagers {

std::string ThunarMenus::uriOf(void* file) {
  const wire::TextPointer uri(thunarx_file_info_get_uri(static_cast<ThunarxFileInfo*>(file)));
  return uri ? uri.get() : std::string();
}

bool ThunarMenus::shows(const MenuEntry& entry, wire::Kind kind) {
  // `thunarx_check_version` takes 4.18 for it, too.
  const std::tuple version(thunarx_major_version, thunarx_minor_version, thunarx_micro_version);
  return MenuTraits::shows(entry, kind) && (entry.isEnabled || version >= std::tuple(4U, 19U, 3U));
}

void ThunarMenus::show(ThunarxMenuItem* item, const MenuEntry& entry) {
  showEntry(item, entry, themedIcon(entry.icon));
}

}  // namespace sprig::filemanagers

// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/LocationUri.h"

#include <glib.h>

#include <string_view>

#include "wire/FileUri.h"

namespace sprig::filemanagers {

std::string locationUri(const char* uri) {
  if (!uri) return {};
  // "x-nemo-desktop:" or "x-nemo-desktop:///": managers write both.
  const std::string_view text(uri);
  const auto place = text.substr(0, text.find_last_not_of('/') + 1);
  if (place != "x-caja-desktop:" && place != "x-nemo-desktop:") return uri;
  const char* folder = g_get_user_special_dir(G_USER_DIRECTORY_DESKTOP);
  return (folder ? wire::uriFromPath(folder) : std::nullopt).value_or("");
}

std::string_view folderOf(std::string_view uri) { return uri.substr(0, uri.rfind('/')); }

bool isHidden(std::string_view uri) {
  return uri.substr(uri.rfind('/') + 1).starts_with('.') || uri.ends_with('~');
}

std::string_view withoutLastSlash(std::string_view uri) {
  if (uri.ends_with('/')) uri.remove_suffix(1);
  return uri;
}

}  // namespace sprig::filemanagers

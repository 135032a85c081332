// SPDX-License-Identifier: GPL-3.0-or-later

#include "filemanagers/client/LocationUri.h"

#include <glib.h>

#include <string_view>

#include "wire/FileUri.h"

namespace sprig::filemanagers {

std::string locationUri(const char* uri) {
  if (!uri) return {};
  const std::string_view text(uri);
  if (text != "x-caja-desktop:///" && text != "x-nemo-desktop:///") return uri;
  const char* folder = g_get_user_special_dir(G_USER_DIRECTORY_DESKTOP);
  return (folder ? wire::uriFromPath(folder) : std::nullopt).value_or("");
}

}  // namespace sprig::filemanagers

// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/window/ContentKind.h"

#include "translation/translated.h"

namespace sprig::settings {

ContentKind kindOf(const std::string& filename, std::string_view bytes) {
  const auto* data = reinterpret_cast<const guchar*>(bytes.data());
  const wire::TextPointer type(g_content_type_guess(filename.c_str(), data, bytes.size(), nullptr));
  const wire::TextPointer description(g_content_type_get_description(type.get()));
  const wire::TextPointer size(g_format_size(bytes.size()));
  return {translated("%1%, %2%", {description.get(), size.get()}),
          wire::ObjectPointer<GIcon>(g_content_type_get_icon(type.get()))};
}

}  // namespace sprig::settings

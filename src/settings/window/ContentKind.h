// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <gtk/gtk.h>

#include <string>
#include <string_view>

#include "wire/Pointers.h"

namespace sprig::settings {

/// What a content is, for people: "PNG image, 8 bytes", and a picture of such files.
struct ContentKind {
  std::string text;
  wire::ObjectPointer<GIcon> icon;
};

/// Told by the name of a file and its first bytes.
///
/// Threads: any.
ContentKind kindOf(const std::string& filename, std::string_view bytes);

}  // namespace sprig::settings

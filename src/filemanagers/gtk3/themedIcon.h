#pragma once

#include <string>

namespace sprig::filemanagers {

/// The icon to draw for one that an entry names: that, or a document where the icon theme doesn't have it.
/// Null for no icon. Lives as long as `icon`. Threads: main thread.
const char* themedIcon(const std::string& icon);

}  // namespace sprig::filemanagers

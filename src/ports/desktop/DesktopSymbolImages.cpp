// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/desktop/DesktopSymbolImages.h"

#include "ports/linux/SymbolIcons.h"

namespace sprig::desktop {

using platform::Image;

std::optional<Image> DesktopSymbolImages::systemSymbol(const std::string& symbolName,
                                                       const std::string& accessibilityDescription) const {
  if (!ports::iconName(symbolName)) return std::nullopt;
  return Image{symbolName, accessibilityDescription};
}

std::optional<Image> DesktopSymbolImages::configured(
    const Image& image, const platform::SymbolConfiguration& configuration) const {
  auto copy = image;
  copy.configuration = configuration;
  return copy;
}

}  // namespace sprig::desktop

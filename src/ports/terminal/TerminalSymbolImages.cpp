// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/TerminalSymbolImages.h"

namespace sprig::terminal {

using platform::Image;

std::optional<Image> TerminalSymbolImages::systemSymbol(const std::string& symbolName,
                                                        const std::string& accessibilityDescription) const {
  if (symbolName.empty()) return std::nullopt;
  Image image;
  image.symbolName = symbolName;
  image.accessibilityDescription = accessibilityDescription;
  return image;
}

std::optional<Image> TerminalSymbolImages::configured(
    const Image& image, const platform::SymbolConfiguration& configuration) const {
  auto copy = image;
  copy.configuration = configuration;
  return copy;
}

}  // namespace sprig::terminal

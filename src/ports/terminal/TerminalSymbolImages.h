// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Image.h"

namespace sprig::terminal {

/// A terminal draws no symbols. Every one exists all the same, so that menus carry the names on to programs
/// that draw them.
class TerminalSymbolImages final : public platform::SymbolImages {
 public:
  std::optional<platform::Image> systemSymbol(const std::string& symbolName,
                                              const std::string& accessibilityDescription) const override;
  std::optional<platform::Image> configured(
      const platform::Image& image, const platform::SymbolConfiguration& configuration) const override;
};

}  // namespace sprig::terminal

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>
#include <string>

#include "platform/Image.h"

namespace sprig::desktop {

/// The symbols that have a name in the icon theme. Whoever draws them looks there.
class DesktopSymbolImages final : public platform::SymbolImages {
 public:
  std::optional<platform::Image> systemSymbol(const std::string& symbolName,
                                              const std::string& accessibilityDescription) const override;
  std::optional<platform::Image> configured(
      const platform::Image& image, const platform::SymbolConfiguration& configuration) const override;
};

}  // namespace sprig::desktop

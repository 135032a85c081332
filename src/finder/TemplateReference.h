// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <vector>

#include "config/ConfigManager.h"

namespace sprig {

/// A template of a configuration, sharing the snapshot it belongs to instead of copying its texts.
using TemplateReference = std::shared_ptr<const TemplateItem>;

inline TemplateReference referTo(const ConfigSnapshot& config, const TemplateItem& item) {
  return {config, &item};
}

}  // namespace sprig

// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "config/AppConfigItem.h"
#include "platform/FileURL.h"
#include "support/TemporaryFolder.h"

namespace sprig::bench {

/// A home folder of its own for this process and those it starts, with a configuration in it. So benchmarks
/// neither see nor change what belongs to whoever runs them.
///
/// Threads:   made while the process has one.
/// Ownership: the folder goes with this.
class Home {
 public:
  explicit Home(const AppConfigItem& config);

  const platform::FileURL& folder() const { return root.url(); }
  platform::FileURL configFile() const { return root / ".config/sprig/config.json"; }

 private:
  test::TemporaryFolder root;
};

}  // namespace sprig::bench

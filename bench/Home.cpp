// SPDX-License-Identifier: GPL-3.0-or-later

#include "Home.h"

#include <cstdlib>
#include <filesystem>

#include "config/ConfigEncoder.h"

namespace sprig::bench {

Home::Home(const AppConfigItem& config) {
  const auto file = configFile();
  std::filesystem::create_directories(file.deletingLastPathComponent().path());
  test::writeFile(file, encodeConfig(config));
  ::setenv("HOME", root.url().path().c_str(), 1);  // NOLINT(concurrency-mt-unsafe): there is one thread
  for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
    ::unsetenv(variable);  // NOLINT(concurrency-mt-unsafe): the same
  }
}

}  // namespace sprig::bench

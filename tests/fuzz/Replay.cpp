// SPDX-License-Identifier: GPL-3.0-or-later

// Tries every seed, and every input that was once at fault, without a fuzzer: sprig-replay SEEDS.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "fuzz/Targets.h"

namespace {

using namespace sprig::fuzz;

const std::map<std::string, void (*)(std::string_view)> targets = {
    {"Configuration", tryConfiguration},   {"Names", tryNames}, {"Rendering", tryRendering},
#ifdef SPRIG_DESKTOP
    {"DialogMessages", tryDialogMessages}, {"Rows", tryRows},
#endif
};

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  for (const auto& [name, target] : targets) {
    int tried = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(arguments[1]) / name)) {
      std::fprintf(stderr, "%s\n", entry.path().c_str());
      target(contentOf(entry.path()));
      ++tried;
    }
    if (tried == 0) return 1;
  }
  return 0;
}

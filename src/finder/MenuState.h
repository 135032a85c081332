// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "finder/TemplateReference.h"
#include "platform/FileURL.h"
#include "text/Text.h"

namespace sprig {

/// The templates that menus have offered, found by id and by name. Texts that are canonically equivalent are
/// one key. Entries are added or replaced, never removed: what a menu has offered stays findable.
///
/// Threads:   main thread.
/// Ownership: keeps one whole configuration alive, the newest one.
class TemplateCache {
 public:
  void insert(const std::string& key, TemplateReference item) {
    templates.insert_or_assign(text::canonicalForm(key), std::move(item));
  }

  /// To be called when all templates that a menu offers of `config` have been inserted. Those of the
  /// configuration before that it offers no longer are copied, so that they don't keep all of that one in
  /// memory.
  void releaseOld(const ConfigSnapshot& config) {
    if (config == newest) return;
    std::unordered_map<const TemplateItem*, TemplateReference> copies;  // one for both keys
    for (auto& [key, item] : templates) {
      if (item.owner_before(newest) || newest.owner_before(item)) continue;
      auto& copy = copies[item.get()];
      if (!copy) copy = std::make_shared<const TemplateItem>(*item);
      item = copy;
    }
    newest = config;
  }

  /// Null when no menu has offered such a template.
  TemplateReference find(std::string_view key) const {
    const auto entry = templates.find(text::canonicalForm(key));
    return entry == templates.end() ? nullptr : entry->second;
  }

 private:
  std::unordered_map<std::string, TemplateReference> templates;
  ConfigSnapshot newest;
};

/// What building a menu leaves for the pick that follows.
///
/// Threads: main thread.
struct MenuState {
  TemplateCache templateCache;
  /// The target folder of the last menu built; absent before the first.
  std::optional<platform::FileURL> lastTargetFolderURL;
};

}  // namespace sprig

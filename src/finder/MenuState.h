#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "finder/TemplateReference.h"
#include "platform/FileURL.h"
#include "text/Text.h"

namespace sprig {

/// The templates that menus have offered, found by id and by name. Texts that are canonically equivalent are
/// one key. Entries are added or replaced, never removed: what a menu has offered stays findable.
class TemplateCache {
 public:
  void enter(const std::string& key, TemplateReference item) {
    templates.insert_or_assign(text::canonicalForm(key), std::move(item));
  }

  /// Null when no menu has offered such a template.
  TemplateReference find(std::string_view key) const {
    const auto entry = templates.find(text::canonicalForm(key));
    return entry == templates.end() ? nullptr : entry->second;
  }

 private:
  std::unordered_map<std::string, TemplateReference> templates;
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

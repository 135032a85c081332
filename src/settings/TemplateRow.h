// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "config/ConfigDocument.h"

namespace sprig::settings {

/// Where the menu has a template.
enum class Placement { inMenu, underMoreTemplates, nowhere };

/// What the list shows of a template.
struct TemplateRow {
  TemplateKey key;
  std::string name;
  std::string extensionName;
  std::string icon;
  bool isEnabled = false;
  bool isFavorite = false;
  Placement placement = Placement::nowhere;
  /// What a search looks in.
  std::string searchText;
  friend bool operator==(const TemplateRow&, const TemplateRow&) = default;
};

/// A row for each template, in the document's order.
///
/// Threads: any.
std::vector<TemplateRow> templateRows(const ConfigDocument& document);

/// What a user searches for: rows that have all its words in their name, extension, file name or section, in
/// any case.
///
/// Threads: any.
class TemplateSearch {
 public:
  explicit TemplateSearch(std::string_view typed);

  /// Without a word, every row is found.
  bool isEmpty() const { return words.empty(); }
  bool finds(const TemplateRow& row) const;
  /// The positions of what is found, in order.
  std::vector<std::size_t> in(const std::vector<TemplateRow>& rows) const;

 private:
  std::vector<std::string> words;
};

}  // namespace sprig::settings

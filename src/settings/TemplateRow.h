// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

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

/// Whether a row has all words of a search in its name, extension, file name or section, in any case.
///
/// Threads: any.
bool isFound(const TemplateRow& row, std::string_view search);

}  // namespace sprig::settings

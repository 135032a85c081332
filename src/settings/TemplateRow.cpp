// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/TemplateRow.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "config/BuiltinTemplates.h"
#include "finder/TemplateCategories.h"
#include "finder/visibleCount.h"
#include "text/Text.h"

namespace sprig::settings {

namespace {

std::string folded(std::string_view text) { return text::lowercased(text::canonicalForm(text)); }

}  // namespace

std::vector<TemplateRow> templateRows(const ConfigDocument& document) {
  const auto& templates = document.config().templates;
  const auto enabled = static_cast<std::size_t>(
      std::count_if(templates.begin(), templates.end(), [](const auto& item) { return item.enabled; }));
  const auto visible = visibleCount(document.config().settings, enabled);
  std::vector<TemplateRow> rows;
  rows.reserve(templates.size());
  std::map<std::string_view, std::size_t> occurrences;
  std::size_t offered = 0;
  for (const auto& item : templates) {
    auto placement = Placement::nowhere;
    if (item.enabled) placement = offered++ < visible ? Placement::inMenu : Placement::underMoreTemplates;
    rows.push_back(
        {{item.id, occurrences[item.id]++},
         displayName(item.id, item.name),
         item.extensionName,
         item.icon,
         item.enabled,
         item.favorite,
         placement,
         folded(displayName(item.id, item.name) + "\n" + item.name + "\n" + item.extensionName + "\n" +
                item.filenamePattern + "\n" + sectionTitle(categoryDisplayName(item.category)))});
  }
  return rows;
}

TemplateSearch::TemplateSearch(std::string_view typed) {
  std::istringstream text(folded(typed));
  for (std::string word; text >> word;) words.push_back(word);
}

bool TemplateSearch::finds(const TemplateRow& row) const {
  return std::all_of(words.begin(), words.end(),
                     [&](const auto& word) { return row.searchText.find(word) != std::string::npos; });
}

std::vector<std::size_t> TemplateSearch::in(const std::vector<TemplateRow>& rows) const {
  std::vector<std::size_t> found;
  for (std::size_t position = 0; position < rows.size(); ++position) {
    if (finds(rows[position])) found.push_back(position);
  }
  return found;
}

}  // namespace sprig::settings

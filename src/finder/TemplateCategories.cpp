// SPDX-License-Identifier: GPL-3.0-or-later

#include "finder/TemplateCategories.h"

#include <algorithm>
#include <unordered_map>

#include "text/Text.h"
#include "translation/translated.h"

namespace sprig {

namespace {

struct StandardCategory {
  std::string_view key;
  std::string_view sectionName;
};

constexpr StandardCategory standardCategories[] = {
    {"code", "Code & Development"},
    {"developer", "Code & Development"},
    {"web", "Code & Development"},
    {"javascript", "Code & Development"},
    {"typescript", "Code & Development"},
    {"python", "Code & Development"},
    {"rust", "Code & Development"},
    {"go", "Code & Development"},
    {"devops", "Code & Development"},
    {"notes", "Notes & Documents"},
    {"writing", "Notes & Documents"},
    {"documentation", "Notes & Documents"},
    {"general", "Notes & Documents"},
    {"office", "Office & Data"},
    {"data", "Office & Data"},
    {"product", "Product & Strategy"},
    {"design", "Design & Creative"},
    {"finance", "Finance & Operations"},
};

}  // namespace

std::string categoryDisplayName(const std::string& category) {
  const auto key = text::lowercased(category);
  for (const auto& standard : standardCategories) {
    if (text::isEqual(key, standard.key)) return std::string(standard.sectionName);
  }
  return text::capitalized(category);
}

std::string sectionTitle(const std::string& sectionName) { return translatedName("section", sectionName); }

std::vector<TemplateSection> groupIntoSections(const std::vector<TemplateReference>& templates,
                                               const std::vector<std::string>& categoryOrder) {
  std::vector<TemplateSection> sections;
  std::unordered_map<std::string, std::size_t> indexOfSection;  // by canonical name
  for (const auto& item : templates) {
    auto name = categoryDisplayName(item->category);
    const auto [entry, isNew] = indexOfSection.try_emplace(text::canonicalForm(name), sections.size());
    if (isNew) sections.push_back({std::move(name), {}});
    sections[entry->second].templates.push_back(item);
  }
  const auto rank = [&](const TemplateSection& section) {
    return std::find(categoryOrder.begin(), categoryOrder.end(), section.name) - categoryOrder.begin();
  };
  std::stable_sort(sections.begin(), sections.end(),
                   [&](const auto& left, const auto& right) { return rank(left) < rank(right); });
  return sections;
}

}  // namespace sprig

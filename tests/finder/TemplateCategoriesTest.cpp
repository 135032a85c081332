// SPDX-License-Identifier: GPL-3.0-or-later

#include "finder/TemplateCategories.h"

#include <gtest/gtest.h>

namespace sprig {
namespace {

TEST(Categories, BelongToAStandardSectionOrNameTheirOwn) {
  const std::pair<const char*, std::vector<const char*>> standard[] = {
      {"Code & Development",
       {"code", "developer", "web", "javascript", "typescript", "python", "rust", "go", "devops", "PYTHON",
        "DevOps", "code & development"}},
      {"Notes & Documents", {"notes", "writing", "documentation", "general"}},
      {"Office & Data", {"office", "data", "Data"}},
      {"Product & Strategy", {"product"}},
      {"Design & Creative", {"design", "Design & Creative"}},
      {"Finance & Operations", {"finance"}},
      {"Docs", {"docs", "DOCS"}},
      {"Notes ", {"notes "}},
      {"Machine Learning", {"machine learning"}},
      {"Ux Research", {"UX research"}},
      {"", {""}},
  };
  for (const auto& [section, categories] : standard) {
    for (const auto* category : categories) EXPECT_EQ(categoryDisplayName(category), section) << category;
  }
}

/// Sections as "Name: a b", one a line.
std::string grouped(const std::vector<std::pair<std::string, std::string>>& templates) {
  std::vector<TemplateReference> references;
  for (const auto& [name, category] : templates) {
    TemplateItem item;
    item.name = name;
    item.category = category;
    references.push_back(std::make_shared<const TemplateItem>(item));
  }
  std::string text;
  for (const auto& section :
       groupIntoSections(references, {standardCategoryOrder.begin(), standardCategoryOrder.end()})) {
    text += section.name + ":";
    for (const auto& item : section.templates) text += " " + item->name;
    text += "\n";
  }
  return text;
}

TEST(Categories, GroupTemplatesWithStandardSectionsFirst) {
  EXPECT_EQ(grouped({{"A", "notes"}, {"B", "python"}, {"C", "writing"}, {"D", "finance"}}),
            "Code & Development: B\nNotes & Documents: A C\nFinance & Operations: D\n");
  EXPECT_EQ(
      grouped(
          {{"A", "travel"}, {"B", "Recipes"}, {"C", "notes"}, {"D", "TRAVEL"}, {"E", "design & creative"}}),
      "Notes & Documents: C\nDesign & Creative: E\nTravel: A D\nRecipes: B\n");
  EXPECT_EQ(grouped({{"A", "caf\u00E9"}, {"B", "cafe\u0301"}}), "Caf\u00E9: A B\n")
      << "equivalent names are one section";
  EXPECT_EQ(grouped({}), "");
}

}  // namespace
}  // namespace sprig

// SPDX-License-Identifier: GPL-3.0-or-later

#include <algorithm>
#include <string>
#include <unordered_set>

#include "finder/TemplateCategories.h"
#include "fuzz/Check.h"
#include "fuzz/Targets.h"
#include "text/Text.h"

namespace sprig::fuzz {

void tryCategories(std::string_view input) {
  std::vector<TemplateReference> templates;
  for (std::string_view rest = input; !rest.empty();) {
    const auto end = std::min(rest.find('\n'), rest.size());
    TemplateItem item;
    item.category = rest.substr(0, end);
    templates.push_back(std::make_shared<const TemplateItem>(std::move(item)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  const std::vector<std::string> order(standardCategoryOrder.begin(), standardCategoryOrder.end());
  std::unordered_set<TemplateReference> seen;
  std::unordered_set<std::string> names;
  for (const auto& section : groupIntoSections(templates, order)) {
    check(!section.templates.empty(), "no section is empty");
    check(names.insert(text::canonicalForm(section.name)).second, "no section comes twice");
    check(!text::isValidUTF8(input) || text::isValidUTF8(section.name), "a section's name can be shown");
    for (const auto& item : section.templates) check(seen.insert(item).second, "no template comes twice");
  }
  check(seen.size() == templates.size(), "no template is lost");
}

}  // namespace sprig::fuzz

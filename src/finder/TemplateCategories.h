// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "finder/TemplateReference.h"
#include "translation/translated.h"

namespace sprig {

/// A named group of templates under "More Templates"; never empty.
struct TemplateSection {
  std::string name;
  std::vector<TemplateReference> templates;
};

/// The standard sections, in the order shown.
inline constexpr std::array<std::string_view, 6> standardCategoryOrder{
    toTranslateName("section", "Code & Development"), toTranslateName("section", "Notes & Documents"),
    toTranslateName("section", "Office & Data"),      toTranslateName("section", "Product & Strategy"),
    toTranslateName("section", "Design & Creative"),  toTranslateName("section", "Finance & Operations"),
};

/// The section a category belongs to: a standard one for the known categories in any case, else one named
/// after the category with each word capitalised.
std::string categoryDisplayName(const std::string& category);

/// What users read as the name of such a section.
std::string sectionTitle(const std::string& sectionName);

/// Groups templates into sections: those named in `categoryOrder` first, in its order, then the others as
/// they first appear. Within a section the templates keep their order.
std::vector<TemplateSection> groupIntoSections(const std::vector<TemplateReference>& templates,
                                               const std::vector<std::string>& categoryOrder);

}  // namespace sprig

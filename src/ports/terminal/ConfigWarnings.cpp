// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/ConfigWarnings.h"

#include <algorithm>
#include <map>

#include "create/Base64.h"
#include "finder/TemplateCategories.h"
#include "ports/linux/SymbolIcons.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig::terminal {

namespace {

class Inspection {
 public:
  explicit Inspection(const AppConfigItem& configuration) : config(configuration) {
    for (std::size_t index = 0; index < config.templates.size(); ++index) {
      firstWithId.emplace(text::canonicalForm(config.templates[index].id), index);
    }
  }

  std::vector<ConfigWarning> run() && {
    for (std::size_t index = 0; index < config.templates.size(); ++index) inspect(index);
    return std::move(warnings);
  }

 private:
  void inspect(std::size_t index) {
    const auto& item = config.templates[index];
    const auto firstWithThis = firstWithId.find(text::canonicalForm(item.id))->second;
    if (firstWithThis != index) {
      warn(index, "id",
           translated("“%1%” is the id of templates[%2%], too; a pick of either creates the one that the "
                      "menu shows last",
                      {item.id, std::to_string(firstWithThis)}));
    }
    const auto named = firstWithId.find(text::canonicalForm(item.name));
    if (named != firstWithId.end() && !text::isEqual(item.name, item.id)) {
      warn(index, "name",
           translated("“%1%” is the id of templates[%2%]; a pick of one may create the other",
                      {item.name, std::to_string(named->second)}));
    }
    if (!ports::isKnownSymbol(item.icon)) {
      warn(index, "icon",
           translated("“%1%” is none of Sprig's symbols; where the icon theme has no icon of that "
                      "name, menus show a document",
                      {item.icon}));
    }
    const auto section = categoryDisplayName(item.category);
    if (std::find(standardCategoryOrder.begin(), standardCategoryOrder.end(), section) ==
        standardCategoryOrder.end()) {
      warn(index, "category",
           translated("“%1%” is none of Sprig's categories; its templates have a section “%2%” of their own",
                      {item.category, section}));
    }
    if (item.contentBase64 && !item.contentBase64->empty()) inspectBase64(index, *item.contentBase64);
  }

  void inspectBase64(std::size_t index, const std::string& encoded) {
    const auto bytes = decodeBase64(encoded);
    if (!bytes) {
      warn(index, "contentBase64", translated("this is not Base64; the file gets the text of “content”"));
    } else if (bytes->empty()) {
      warn(index, "contentBase64", translated("no character of this is Base64; the file is empty"));
    }
  }

  void warn(std::size_t index, const char* key, const std::string& problem) {
    warnings.push_back(
        {{"templates", index, key}, "templates[" + std::to_string(index) + "]." + key + ": " + problem});
  }

  const AppConfigItem& config;
  std::map<std::string, std::size_t> firstWithId;
  std::vector<ConfigWarning> warnings;
};

}  // namespace

std::vector<ConfigWarning> warningsOf(const AppConfigItem& config) { return Inspection(config).run(); }

}  // namespace sprig::terminal

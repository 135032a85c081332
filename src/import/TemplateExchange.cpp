// SPDX-License-Identifier: GPL-3.0-or-later

#include "import/TemplateExchange.h"

#include "import/TemplateLayout.h"
#include "import/templateFromFile.h"

namespace sprig {

namespace {

constexpr std::string_view indentation = "    ";

std::string laidOut(const ConfigDocument& document, std::size_t index) {
  const auto text = document.textOf(index);
  return reindented(text, indentationOf(text), indentation);
}

}  // namespace

std::string sharedTemplates(const ConfigDocument& document, const std::vector<std::size_t>& indices) {
  std::string text = "{\n  \"version\": 1,\n  \"settings\": {},\n  \"templates\": [";
  std::string_view separator = "\n";
  for (const auto index : indices) {
    text.append(separator).append(indentation) += laidOut(document, index);
    separator = ",\n";
  }
  return text + "\n  ]\n}\n";
}

void addShared(ConfigDocument& document, const std::string& text) {
  const ConfigDocument shared(text);
  for (std::size_t index = 0; index < shared.config().templates.size(); ++index) {
    auto item = shared.config().templates[index];
    const auto end = document.config().templates.size();
    if (document.find({item.id, 0})) item.id = newTemplateId(document.config(), item.name);
    document.insertText(end, laidOut(shared, index));
    document.setTemplate(end, item);
  }
}

}  // namespace sprig

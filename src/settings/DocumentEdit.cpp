// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/DocumentEdit.h"

#include <algorithm>

#include "config/ConfigFields.h"
#include "import/templateFromFile.h"

namespace sprig::settings {

namespace {

/// The fields that differ between the states, where the record still has the one before.
template <typename Record>
Record changed(Record record, const Record& before, const Record& after) {
  forEachField<Record>([&](const auto& field) {
    if (record.*field.member == before.*field.member) record.*field.member = after.*field.member;
  });
  return record;
}

}  // namespace

DocumentEdit changeTemplate(const TemplateKey& key, const TemplateItem& before, const TemplateItem& after) {
  return {[=](ConfigDocument& document) -> DocumentEdit {
    const auto index = document.find(key);
    if (!index) return {};
    const auto current = document.config().templates[*index];
    const auto wanted = changed(current, before, after);
    if (wanted == current) return {};
    document.setTemplate(*index, wanted);
    return changeTemplate(document.keyOf(*index), wanted, current);
  }};
}

DocumentEdit changeSettings(const AppSettingsItem& before, const AppSettingsItem& after) {
  return {[=](ConfigDocument& document) -> DocumentEdit {
    const auto current = document.config().settings;
    const auto wanted = changed(current, before, after);
    if (wanted == current) return {};
    document.setSettings(wanted);
    return changeSettings(wanted, current);
  }};
}

DocumentEdit moveTemplate(const TemplateKey& key, std::size_t position) {
  return {[=](ConfigDocument& document) -> DocumentEdit {
    const auto index = document.find(key);
    if (!index) return {};
    const auto target = std::min(position, document.config().templates.size() - 1);
    if (*index == target) return {};
    document.moveTemplate(*index, target);
    return moveTemplate(document.keyOf(target), *index);
  }};
}

DocumentEdit insertTemplate(std::size_t position, const std::string& text) {
  return {[=](ConfigDocument& document) -> DocumentEdit {
    const auto index = std::min(position, document.config().templates.size());
    document.insertText(index, text);
    return removeTemplate(document.keyOf(index));
  }};
}

DocumentEdit insertTemplate(std::size_t position, const TemplateItem& item) {
  return {[=](ConfigDocument& document) -> DocumentEdit {
    const auto index = std::min(position, document.config().templates.size());
    document.insertTemplate(index, item);
    return removeTemplate(document.keyOf(index));
  }};
}

DocumentEdit insertNew(const std::vector<TemplateItem>& items) {
  return {[=](ConfigDocument& document) -> DocumentEdit {
    DocumentEdit back;
    for (std::size_t index = 0; index < items.size(); ++index) {
      auto item = items[index];
      item.id = newTemplateId(document.config(), item.name);
      document.insertTemplate(index, item);
      const auto remove = removeTemplate(document.keyOf(index));
      back = back.apply ? both(remove, back) : remove;
    }
    return back;
  }};
}

DocumentEdit removeTemplate(const TemplateKey& key) {
  return {[=](ConfigDocument& document) -> DocumentEdit {
    const auto index = document.find(key);
    if (!index) return {};
    const auto text = document.textOf(*index);
    document.removeTemplate(*index);
    return insertTemplate(*index, text);
  }};
}

DocumentEdit duplicateTemplate(const TemplateKey& key, const std::string& name) {
  return {[=](ConfigDocument& document) -> DocumentEdit {
    const auto index = document.find(key);
    if (!index) return {};
    auto item = document.config().templates[*index];
    item.id = newTemplateId(document.config(), name);
    item.name = name;
    item.isBuiltin = false;
    document.insertText(*index + 1, document.textOf(*index));
    document.setTemplate(*index + 1, item);
    return removeTemplate(document.keyOf(*index + 1));
  }};
}

DocumentEdit changeInPlace(const std::function<void(ConfigDocument&)>& change) {
  return {[=](ConfigDocument& document) -> DocumentEdit {
    const auto before = document.config().templates;
    change(document);
    const auto& after = document.config().templates;
    DocumentEdit back;
    const auto takeBack = [&](const DocumentEdit& edit) { back = back.apply ? both(edit, back) : edit; };
    for (std::size_t index = 0; index < after.size(); ++index) {
      if (index >= before.size()) {
        takeBack(removeTemplate(document.keyOf(index)));
      } else if (!(after[index] == before[index])) {
        takeBack(changeTemplate(document.keyOf(index), after[index], before[index]));
      }
    }
    return back;
  }};
}

DocumentEdit both(const DocumentEdit& first, const DocumentEdit& second) {
  return {[=](ConfigDocument& document) -> DocumentEdit {
    auto takesFirstBack = first.apply(document);
    auto takesSecondBack = second.apply(document);
    if (!takesFirstBack.apply) return takesSecondBack;
    if (!takesSecondBack.apply) return takesFirstBack;
    return both(takesSecondBack, takesFirstBack);
  }};
}

}  // namespace sprig::settings

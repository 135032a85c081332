// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/DocumentEdit.h"

#include <algorithm>
#include <utility>

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

/// What takes back the edits that were made in this order, given what takes back each.
DocumentEdit backwards(std::vector<DocumentEdit> edits) {
  if (edits.empty()) return {};
  std::reverse(edits.begin(), edits.end());
  return inTurn(std::move(edits));
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
    std::vector<DocumentEdit> back;
    for (std::size_t index = 0; index < items.size(); ++index) {
      auto item = items[index];
      item.id = newTemplateId(document.config(), item.name);
      document.insertTemplate(index, item);
      back.push_back(removeTemplate(document.keyOf(index)));
    }
    return backwards(std::move(back));
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
    std::vector<DocumentEdit> back;
    for (std::size_t index = 0; index < after.size(); ++index) {
      if (index >= before.size()) {
        back.push_back(removeTemplate(document.keyOf(index)));
      } else if (!(after[index] == before[index])) {
        back.push_back(changeTemplate(document.keyOf(index), after[index], before[index]));
      }
    }
    return backwards(std::move(back));
  }};
}

DocumentEdit inTurn(std::vector<DocumentEdit> edits) {
  return {[edits = std::move(edits)](ConfigDocument& document) -> DocumentEdit {
    std::vector<DocumentEdit> back;
    for (const auto& edit : edits) {
      auto takesBack = edit.apply(document);
      if (takesBack.apply) back.push_back(std::move(takesBack));
    }
    return backwards(std::move(back));
  }};
}

}  // namespace sprig::settings

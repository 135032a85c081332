// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/SettingsModel.h"

#include <algorithm>
#include <array>
#include <set>
#include <tuple>
#include <utility>

#include "config/BuiltinTemplates.h"
#include "config/ConfigDecoder.h"
#include "config/ConfigEncoder.h"
#include "engine/TemplateEngine.h"
#include "finder/TemplateCategories.h"
#include "import/templateFromFile.h"
#include "platform/Platform.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig::settings {

using platform::FileURL;

namespace {

constexpr std::size_t maxSteps = 100;

std::string builtinText() { return encodeConfig(defaultFallbackConfig()); }

std::string titleOfAdding(std::size_t count, const std::string& firstName) {
  if (count == 1) return translated("Add “%1%”", {firstName});
  return translatedCount("Add %1% Template", "Add %1% Templates", count);
}

/// As a sentence: begins with a capital letter, and ends in a full stop.
std::string sentence(std::string text) {
  if (!text.empty() && text.front() >= 'a' && text.front() <= 'z')
    text.front() = static_cast<char>(text.front() - ('a' - 'A'));
  if (!text.empty() && text.back() != '.') text += '.';
  return text;
}

/// With an id when it is inserted.
TemplateItem newTemplate() {
  TemplateItem item;
  item.name = translated("New Template");
  item.extensionName = ".txt";
  item.filenamePattern = item.name;
  item.icon = "doc.text";
  item.category = "general";
  item.enabled = true;
  return item;
}

}  // namespace

SettingsModel::SettingsModel() : document(builtinText()) { read(); }

void SettingsModel::reload() {
  const auto before = std::tuple(fileText, canWrite, problem.has_value());
  read();
  if (before != std::tuple(fileText, canWrite, problem.has_value())) announce();
}

void SettingsModel::read() {
  canWrite = ConfigEditor::isWritable();
  problem.reset();
  auto found = ConfigEditor::text();
  if (!found) {
    problem = TextFault{sentence(found.error().description), {}};
    fileText.reset();
  } else {
    fileText = std::move(*found);
  }
  source = fileText.value_or("");
  if (fileText) problem = faultIn(*fileText);
  const bool isUsable = fileText && !problem;
  document = ConfigDocument(isUsable ? *fileText : builtinText());
  list = problem ? std::vector<TemplateRow>() : templateRows(document);
}

void SettingsModel::take(ConfigDocument newDocument) {
  document = std::move(newDocument);
  fileText = source = document.text();
  list = templateRows(document);
}

const TemplateItem* SettingsModel::find(const TemplateKey& key) const {
  const auto index = document.find(key);
  return index && !problem ? &document.config().templates[*index] : nullptr;
}

std::vector<std::string> SettingsModel::categories() const {
  constexpr std::array<const char*, 6> usual = {"developer", "writing", "office",
                                                "product",   "design",  "finance"};
  std::vector<std::string> result(usual.begin(), usual.end());
  std::set<std::string> sections(standardCategoryOrder.begin(), standardCategoryOrder.end());
  for (const auto& item : document.config().templates) {
    if (sections.insert(categoryDisplayName(item.category)).second) result.push_back(item.category);
  }
  return result;
}

std::optional<DocumentEdit> SettingsModel::apply(const DocumentEdit& edit) {
  DocumentEdit back;
  auto result = editor.update([&](ConfigDocument& current) { back = edit.apply(current); });
  if (!result) {
    fail(result.error());
    return std::nullopt;
  }
  if (result->text() != document.text() || back.apply) take(std::move(*result));
  if (!back.apply) return std::nullopt;
  return back;
}

bool SettingsModel::perform(const std::string& title, const DocumentEdit& edit) {
  auto back = apply(edit);
  if (back) {
    undoSteps.push_back({title, std::move(*back)});
    if (undoSteps.size() > maxSteps) undoSteps.erase(undoSteps.begin());
    redoSteps.clear();
  }
  announce();
  return back.has_value();
}

bool SettingsModel::performStep(std::vector<Step>& from, std::vector<Step>& to) {
  if (from.empty()) return false;
  auto step = std::move(from.back());
  from.pop_back();
  auto back = apply(step.edit);
  if (back) to.push_back({step.title, std::move(*back)});
  announce();
  return back.has_value();
}

bool SettingsModel::changeField(const TemplateKey& key, const std::string& title,
                                const std::function<void(TemplateItem&)>& edit) {
  const auto* item = find(key);
  if (item == nullptr) return false;
  auto wanted = *item;
  edit(wanted);
  return perform(title, changeTemplate(key, *item, wanted));
}

std::string SettingsModel::titleFor(const char* pattern, const TemplateKey& key) const {
  const auto* item = find(key);
  return translated(pattern, {item == nullptr ? key.id : displayName(item->id, item->name)});
}

bool SettingsModel::setEnabled(const TemplateKey& key, bool isEnabled) {
  return changeField(key, titleFor(isEnabled ? toTranslate("Show “%1%”") : toTranslate("Hide “%1%”"), key),
                     [&](TemplateItem& item) { item.enabled = isEnabled; });
}

bool SettingsModel::setFavorite(const TemplateKey& key, bool isFavorite) {
  return changeField(key, titleFor(toTranslate("Change “%1%”"), key),
                     [&](TemplateItem& item) { item.favorite = isFavorite; });
}

bool SettingsModel::move(const TemplateKey& key, std::size_t position) {
  return perform(titleFor(toTranslate("Move “%1%”"), key), moveTemplate(key, position));
}

bool SettingsModel::remove(const TemplateKey& key) {
  return perform(titleFor(toTranslate("Remove “%1%”"), key), removeTemplate(key));
}

std::optional<TemplateKey> SettingsModel::performInsert(const std::string& title, const DocumentEdit& edit) {
  std::optional<TemplateKey> inserted;
  const DocumentEdit noting{[&](ConfigDocument& current) -> DocumentEdit {
    const auto before = current.config().templates;
    auto back = edit.apply(current);
    const auto& after = current.config().templates;
    const auto difference = std::mismatch(after.begin(), after.end(), before.begin(), before.end()).first;
    if (back.apply) inserted = current.keyOf(static_cast<std::size_t>(difference - after.begin()));
    return back;
  }};
  return perform(title, noting) ? inserted : std::nullopt;
}

std::optional<TemplateKey> SettingsModel::addNew() {
  return performInsert(translated("Add “%1%”", {translated("New Template")}), insertNew({newTemplate()}));
}

std::optional<TemplateKey> SettingsModel::duplicate(const TemplateKey& key) {
  const auto* original = find(key);
  if (original == nullptr) return std::nullopt;
  return performInsert(titleFor(toTranslate("Duplicate “%1%”"), key),
                       duplicateTemplate(key, translated("%1% Copy", {original->name})));
}

bool SettingsModel::addFiles(const std::vector<FileURL>& files) {
  std::vector<TemplateItem> items;
  std::string failure;
  for (const auto& file : files) {
    auto item = templateFromFile(file);
    if (item) items.push_back(std::move(*item));
    if (!item && failure.empty()) failure = item.error().description;
  }
  const bool isAdded =
      !items.empty() && perform(titleOfAdding(items.size(), items.front().name), insertNew(items));
  if (!failure.empty() && failed) failed(sentence(failure));
  return isAdded;
}

bool SettingsModel::addImported(const TemplateImport& offer, const std::vector<std::size_t>& chosen) {
  if (chosen.empty() || problem) return false;
  const auto& first = offer.entries()[chosen.front()].item.name;
  return perform(titleOfAdding(chosen.size(), first), offer.adding(chosen));
}

bool SettingsModel::setSettings(const AppSettingsItem& wanted) {
  if (problem) return false;
  return perform(translated("Change Settings"), changeSettings(settings(), wanted));
}

bool SettingsModel::change(const TemplateKey& key, const TemplateItem& before, const TemplateItem& after,
                           int session) {
  if (!perform(titleFor(toTranslate("Change “%1%”"), key), changeTemplate(key, before, after))) return false;
  undoSteps.back().session = session;
  if (undoSteps.size() < 2 || undoSteps[undoSteps.size() - 2].session != session) return true;
  const auto last = undoSteps.back().edit;
  undoSteps.pop_back();
  auto& step = undoSteps.back();
  step.edit = inTurn({last, step.edit});
  return true;
}

std::optional<std::string> SettingsModel::undoable() const {
  if (undoSteps.empty() || problem) return std::nullopt;
  return undoSteps.back().title;
}

bool SettingsModel::undo() { return performStep(undoSteps, redoSteps); }
bool SettingsModel::redo() { return performStep(redoSteps, undoSteps); }

std::optional<TextFault> SettingsModel::faultIn(const std::string& text) {
  try {
    static_cast<void>(decodeConfig(text));
  } catch (const DecodingError& error) {
    return TextFault{sentence(error.sentence().shown), error.position()};
  }
  return std::nullopt;
}

bool SettingsModel::saveText(const std::string& old, const std::string& wanted) {
  const auto expected = fileText ? std::make_optional(old) : std::nullopt;
  if (const auto error = editor.replaceText(expected, wanted)) return fail(*error);
  read();
  announce();
  return true;
}

std::optional<FileURL> SettingsModel::backup() const {
  for (const auto& file : ConfigEditor::backups()) {
    const auto text = platform::current().files.contentsOfFile(file);
    if (text && *text != source && !faultIn(*text)) return file;
  }
  return std::nullopt;
}

bool SettingsModel::restoreBackup() {
  const auto file = backup();
  if (!file) return false;
  const auto text = platform::current().files.contentsOfFile(*file);
  return text && saveText(source, *text);
}

std::optional<FileURL> SettingsModel::startAfresh() {
  auto& files = platform::current().files;
  const auto folder = files.stateDirectory();
  auto copy = folder.appendingPath(TemplateEngine::resolveCollision(folder, "broken-config.json"));
  if (const auto error = files.appendData(source, copy)) {
    fail({ConfigEditError::Reason::inaccessible, error->description});
    return std::nullopt;
  }
  if (!saveText(source, builtinText())) return std::nullopt;
  return copy;
}

bool SettingsModel::fail(const ConfigEditError& error) {
  // It may not be what it was.
  reload();
  if (failed) failed(sentence(error.description));
  return false;
}

void SettingsModel::announce() const {
  if (changed) changed();
}

}  // namespace sprig::settings

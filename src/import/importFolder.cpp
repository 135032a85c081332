// SPDX-License-Identifier: GPL-3.0-or-later

#include "import/importFolder.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "import/DesktopEntry.h"
#include "import/templateFromFile.h"
#include "platform/Platform.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig {

using platform::EntryKind;
using platform::FileURL;

namespace {

constexpr int deepest = 5;
constexpr std::size_t maxFiles = 500;
constexpr std::size_t maxBytes = std::size_t{64} << 20;
constexpr const char* sourceKey = "importedFrom";

class Surveyor {
 public:
  ImportSurvey survey(const FileURL& folder) && {
    visitFolder(folder, "", 0);
    return std::move(result);
  }

 private:
  void visitFolder(const FileURL& folder, const std::string& category, int depth) {
    const auto& files = platform::current().files;
    if (!visited.insert(files.resolvingSymlinks(folder)).second)
      return skip(folder, toTranslate("%1% was read already"));
    auto names = files.contentsOfDirectory(folder);
    if (!names) return skip(folder, toTranslate("%1% can't be read"));
    std::sort(names->begin(), names->end());
    for (const auto& name : *names) {
      if (!name.starts_with('.') && !name.ends_with('~')) visit(folder.appendingPath(name), category, depth);
    }
  }

  void visit(const FileURL& entry, const std::string& category, int depth) {
    const auto kind = platform::current().files.entryKind(entry);
    if (kind == EntryKind::none) return skip(entry, toTranslate("%1% is a link to nothing"));
    if (kind == EntryKind::other) return visitFile(entry, category);
    if (depth == deepest) return skip(entry, toTranslate("%1% is too deep in folders"));
    const auto name = text::toValidUTF8(entry.lastPathComponent());
    visitFolder(entry, category.empty() ? name : category, depth + 1);
  }

  void visitFile(const FileURL& file, const std::string& category) {
    if (result.candidates.size() == maxFiles)
      return skip(file, toTranslate("%1% is more than the 500 files that are read"));
    if (bytes > maxBytes) return skip(file, toTranslate("%1% is more than the 64 MiB that are read"));
    const auto entry = desktopEntryIn(file);
    if (entry && !entry->target) return skip(file, toTranslate("%1% is no link to a file of this computer"));
    const auto& source = entry ? *entry->target : file;
    auto item = templateFromFile(source);
    if (!item) return skip(file, toTranslate("%1% can't be read, or has more than 16 MiB"));
    bytes += item->content.size() + item->contentBase64.value_or("").size();
    if (entry && !entry->name.empty()) item->name = entry->name;
    if (!category.empty()) item->category = category;
    result.candidates.push_back({std::move(*item), source});
  }

  void skip(const FileURL& file, const char* reason) { result.skipped.push_back({file, reason}); }

  ImportSurvey result;
  std::set<FileURL> visited;
  std::size_t bytes = 0;
};

/// The template that was imported from there before.
std::optional<std::size_t> importedFrom(const ConfigDocument& document, const FileURL& file) {
  const auto source = text::toValidUTF8(file.path());
  for (std::size_t index = 0; index < document.config().templates.size(); ++index) {
    if (document.otherText(index, sourceKey) == source) return index;
  }
  return std::nullopt;
}

TemplateItem withContent(TemplateItem item, const TemplateItem& source) {
  item.content = source.content;
  item.contentBase64 = source.contentBase64;
  return item;
}

ImportOutcome outcomeFor(const TemplateItem& imported, const ImportCandidate& candidate) {
  return withContent(imported, candidate.item) == imported ? ImportOutcome::unchanged
                                                           : ImportOutcome::updated;
}

}  // namespace

ImportSurvey surveyFolder(const FileURL& folder) { return Surveyor().survey(folder); }

ImportOutcome importOutcome(const ConfigDocument& document, const ImportCandidate& candidate) {
  const auto index = importedFrom(document, candidate.source);
  return index ? outcomeFor(document.config().templates[*index], candidate) : ImportOutcome::added;
}

ImportOutcome importTemplate(ConfigDocument& document, const ImportCandidate& candidate) {
  if (const auto index = importedFrom(document, candidate.source)) {
    const auto& item = document.config().templates[*index];
    const auto outcome = outcomeFor(item, candidate);
    if (outcome == ImportOutcome::updated) document.setTemplate(*index, withContent(item, candidate.item));
    return outcome;
  }
  const auto end = document.config().templates.size();
  auto item = candidate.item;
  item.id = newTemplateId(document.config(), item.name);
  document.insertTemplate(end, item);
  document.setOtherText(end, sourceKey, text::toValidUTF8(candidate.source.path()));
  return ImportOutcome::added;
}

}  // namespace sprig

// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/TemplateImport.h"

#include <utility>

#include "config/ConfigDecoder.h"
#include "import/TemplateExchange.h"
#include "platform/Platform.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig::settings {

using platform::FileURL;

namespace {

/// The file's name in quotes.
std::string quoted(const FileURL& file) {
  return translated("“%1%”", {text::toValidUTF8(file.lastPathComponent())});
}

}  // namespace

TemplateImport TemplateImport::fromFolder(const FileURL& folder, const ConfigDocument& document) {
  TemplateImport result;
  auto survey = surveyFolder(folder);
  for (auto& candidate : survey.candidates) {
    result.offered.push_back({candidate.item, importOutcome(document, candidate)});
    result.changes.emplace_back(
        [found = std::move(candidate)](ConfigDocument& current) { importTemplate(current, found); });
  }
  for (const auto& [file, reason] : survey.skipped)
    result.notTaken.push_back(translated("%1%.", {translated(reason, {quoted(file)})}));
  return result;
}

TemplateImport TemplateImport::fromSharedFiles(const std::vector<FileURL>& files) {
  TemplateImport result;
  for (const auto& file : files) {
    const auto text = platform::current().files.contentsOfFile(file);
    try {
      if (text) result.offerShared(ConfigDocument(*text));
      if (!text) result.notTaken.push_back(translated("%1% can’t be read.", {quoted(file)}));
    } catch (const DecodingError& error) {
      result.notTaken.push_back(translated("%1% holds no templates that can be read: %2%.",
                                           {quoted(file), error.sentence().shown}));
    }
  }
  return result;
}

void TemplateImport::offerShared(const ConfigDocument& shared) {
  std::size_t index = 0;
  for (const auto& item : shared.config().templates) {
    offered.push_back({item});
    changes.emplace_back(
        [one = sharedTemplates(shared, {index++})](ConfigDocument& current) { addShared(current, one); });
  }
}

DocumentEdit TemplateImport::adding(const std::vector<std::size_t>& chosen) const {
  std::vector<Change> wanted;
  wanted.reserve(chosen.size());
  for (const auto place : chosen) wanted.push_back(changes[place]);
  return changeInPlace([wanted](ConfigDocument& document) {
    for (const auto& change : wanted) change(document);
  });
}

}  // namespace sprig::settings

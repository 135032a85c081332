// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/TemplatePreview.h"

#include "create/Base64.h"
#include "engine/TemplateEngine.h"
#include "text/Text.h"
#include "translation/translated.h"

namespace sprig::settings {

namespace {

constexpr Placeholder everywhere[] = {
    {"{{date}}", toTranslate("Date")},
    {"{{time}}", toTranslate("Time")},
    {"{{datetime}}", toTranslate("Date and Time")},
    {"{{year}}", toTranslate("Year")},
    {"{{month}}", toTranslate("Month")},
    {"{{day}}", toTranslate("Day")},
    {"{{folder}}", toTranslate("Folder")},
    {"{{project}}", toTranslate("Project")},
    {"{{author}}", toTranslate("Author")},
};

std::vector<Placeholder> withFirst(std::vector<Placeholder> first) {
  first.insert(first.end(), std::begin(everywhere), std::end(everywhere));
  return first;
}

}  // namespace

TemplatePreview previewOf(const TemplateItem& item, const platform::FileURL& folder) {
  const auto name = folder.lastPathComponent();
  auto rendered = TemplateEngine::render(item, {}, name, name);
  auto filename = TemplateEngine::resolveCollision(folder, rendered.filename);
  auto bytes = ownBytes(item);
  const bool hasOwnBytes = bytes.has_value();
  return {std::move(filename), hasOwnBytes ? std::move(*bytes) : std::move(rendered.content), hasOwnBytes};
}

std::optional<std::string> ownBytes(const TemplateItem& item) {
  if (!item.contentBase64 || item.contentBase64->empty()) return std::nullopt;
  return decodeBase64(*item.contentBase64);
}

std::vector<Placeholder> placeholdersOfNames() { return withFirst({}); }

std::vector<Placeholder> placeholdersOfContents() {
  return withFirst(
      {{"{{name}}", toTranslate("File Name Without Extension")}, {"{{filename}}", toTranslate("File Name")}});
}

}  // namespace sprig::settings

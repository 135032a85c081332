// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/TemplatePreview.h"

#include "create/Base64.h"
#include "engine/TemplateEngine.h"
#include "text/Text.h"

namespace sprig::settings {

namespace {

constexpr Placeholder everywhere[] = {
    {"{{date}}", "Date"},     {"{{time}}", "Time"},       {"{{datetime}}", "Date and Time"},
    {"{{year}}", "Year"},     {"{{month}}", "Month"},     {"{{day}}", "Day"},
    {"{{folder}}", "Folder"}, {"{{project}}", "Project"}, {"{{author}}", "Author"},
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
  return withFirst({{"{{name}}", "File Name Without Extension"}, {"{{filename}}", "File Name"}});
}

}  // namespace sprig::settings
